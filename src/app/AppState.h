#pragma once

#include "AppServices.h"
#include "BackgroundThreads.h"
#include "Published.h"
#include "Reading.h"
#include "SummaryLength.h"
#include "SummaryMode.h"
#include "WordCount.h"

#include <QCoroTask>
#include <QString>

#include <array>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

class CancelToken;
class MainThreadQueue;

/// Everything that the interface shows, and every action that the user can start. Main thread only.
///
/// Actions that read a source return at once, while the text is still being read. Whatever is
/// started or stopped meanwhile, each of them goes on to its end and summarises what it has read.
class AppState : public ObservableObject
{
    Q_OBJECT

public:
    enum class Tab { clipboard, document, web, capture };
    static constexpr std::array allTabs = {Tab::clipboard, Tab::document, Tab::web, Tab::capture};
    static constexpr std::chrono::milliseconds toastTime{1800}; // until a toast goes by itself

    /// The label of a tab. It also identifies the tab in lists.
    static std::string_view rawValue(Tab tab);
    static std::optional<Tab> tabFromRawValue(std::string_view wanted);

    /// The program's one state, with the real services. Made by the first call and destroyed with
    /// the application object. Any thread.
    static AppState& shared();

    explicit AppState(AppServices services);
    /// Cancels the run under way. Waits for work that still blocks, but only for a moment.
    ~AppState() override;

    Published<Tab> tab{*this, Tab::clipboard};
    Published<QString> sourceText{*this};
    Published<QString> sourceLabel{*this};
    Published<SummaryMode> mode{*this, SummaryMode::bullets};
    Published<double> length{*this, 1.0}; // the position of the length control: 0 to 2
    Published<QString> output{*this};
    Published<bool> isWorking{*this, false};
    Published<QString> status{*this};
    Published<std::optional<QString>> errorMessage{*this};
    Published<QString> urlString{*this};
    Published<std::optional<QString>> toast{*this};

    /// The token of the current or last run; null before the first.
    std::shared_ptr<const CancelToken> token() const { return m_token; }

    /// The summary length at the position `length`, rounded; balanced for a position outside of 0
    /// to 2. Ends the process if the rounded position does not fit into 64 bits.
    SummaryLength lengthValue() const;

    /// How many words `sourceText` has. They are counted once for each text.
    qsizetype wordCount() const;

    /// Normalises a text (valid UTF-8) from any source and summarises it. If there is nothing in
    /// it, sets `errorMessage` instead.
    void setSource(std::string_view text, const QString& label);

    /// Summarises `sourceText`. A run under way is cancelled.
    void summarize();
    /// Cancels the run under way. The output that it has written stays.
    void stop();

    void useClipboard();
    void loadFile(const std::filesystem::path& file);
    void fetchURL();
    void capture(ScreenGrab::Kind kind);
    /// Summarises the selected text, else the front window, else the clipboard. Completes when the
    /// summary has been started or the error shown. It must not be awaited any longer than this
    /// object lives. Several presses may be under way at once, each independent of the others. At
    /// `mostPresses` a further one is ignored.
    QCoro::Task<> handleHotkey();
    /// Those whose work is under way, and 8 that wait for their turn.
    static constexpr int mostPresses = BackgroundThreads::mostInTurn + 8;

    void copyMarkdown();
    /// Copies the output without the markers of bold text.
    void replaceClipboard();
    void appendToDailyNote();

private:
    void accept(const QString& normalised, const QString& label);
    void fail(const QString& sentence);
    void beginReading(const QString& message);
    void flash(const QString& message);
    void copy(const QString& text);

    QFuture<Reading> inBackground(std::function<DocumentText()> read,
                                  BackgroundThreads::Start start = &BackgroundThreads::start);
    QCoro::Task<> takeWhatIsThere();
    template <typename Awaitable>
    QCoro::Task<> acceptWhenRead(Awaitable source, QString label);
    QFuture<Reading> clipboardText();
    QFuture<Reading> capturedText(ScreenGrab::Kind kind);
    QCoro::Task<> acceptClipboard(QString messageOtherwise);

    const AppServices m_services;
    std::shared_ptr<CancelToken> m_token;
    mutable WordCount m_wordCount;
    int m_presses = 0; // presses of the hotkey that are under way
    const std::shared_ptr<MainThreadQueue> m_queue;
    BackgroundThreads m_threads;
};

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
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

class CancelToken;
class MainThreadQueue;

/// All that the interface shows and every action the user can start. Main thread only.
///
/// A source action returns at once, with its text still on the way; each takes its course, whatever
/// is started or stopped meanwhile, and in the end summarises what it has found.
class AppState : public ObservableObject
{
    Q_OBJECT

public:
    enum class Tab { clipboard, document, web, capture };
    static constexpr std::array allTabs = {Tab::clipboard, Tab::document, Tab::web, Tab::capture};

    /// The label of a tab, its identity in lists.
    static std::string_view rawValue(Tab tab);
    static std::optional<Tab> tabFromRawValue(std::string_view rawValue);

    /// The one of the program, with the real services; made at the first call and destroyed with
    /// the application object. Any thread.
    static AppState& shared();

    explicit AppState(AppServices services);
    /// Cancels the run under way. What still blocks is waited for, but only for a moment.
    ~AppState() override;

    Published<Tab> tab{*this, Tab::clipboard};
    Published<QString> sourceText{*this};
    Published<QString> sourceLabel{*this};
    Published<SummaryMode> mode{*this, SummaryMode::bullets};
    Published<double> length{*this, 1.0}; // where the length control stands: 0 to 2
    Published<QString> output{*this};
    Published<bool> isWorking{*this, false};
    Published<QString> status{*this};
    Published<std::optional<QString>> errorMessage{*this};
    Published<QString> urlString{*this};
    Published<std::optional<QString>> toast{*this};

    /// The token of the current or last run; null before the first.
    std::shared_ptr<const CancelToken> token() const { return m_token; }

    /// What `length` stands for, balanced where it stands for none. A length that is no number of
    /// 64 bits, once rounded, ends the process.
    SummaryLength lengthValue() const;

    /// The words of `sourceText`, counted once.
    qsizetype wordCount() const;

    /// Normalises a text (valid UTF-8) from any source and summarises it; says so where there is
    /// nothing in it.
    void setSource(std::string_view text, const QString& label);

    /// Summarises `sourceText`, in place of the run under way.
    void summarize();
    /// Ends the run under way; what it has written stays.
    void stop();

    void useClipboard();
    void loadFile(const std::filesystem::path& file);
    void fetchURL();
    void capture(ScreenGrab::Kind kind);
    /// Summarises the selected text, else the front window, else the clipboard. Completes when the
    /// summary has been started or the error shown. Must not be awaited beyond this object's life.
    /// Each press takes its course, but only so many at a time: one more is dropped.
    QCoro::Task<> handleHotkey();
    static constexpr int mostPresses = BackgroundThreads::mostInTurn + 8; // that work, that wait

    void copyMarkdown();
    /// Copies the output without the markers of bold text.
    void replaceClipboard();
    void appendToDailyNote();

private:
    static AppState* createShared();

    void accept(const QString& normalised, const QString& label);
    void fail(const QString& sentence);
    void beginReading(const QString& message);
    void flash(const QString& message);
    void copy(const QString& text);

    enum class Effort { little, much }; // much takes its turn
    QFuture<Reading> inBackground(std::function<DocumentText()> read,
                                  Effort effort = Effort::little);
    QCoro::Task<QString> inBackgroundOrNothing(std::function<std::string()> read,
                                               Effort effort = Effort::little);
    QCoro::Task<> takeWhatIsThere();
    template <typename Awaitable>
    QCoro::Task<> acceptWhenRead(Awaitable source, QString label);
    QFuture<Reading> clipboardText();
    QCoro::Task<QString> frontWindowText();
    QCoro::Task<> acceptClipboard(QString messageOtherwise);

    const AppServices m_services;
    std::shared_ptr<CancelToken> m_token;
    mutable WordCount m_wordCount;
    int m_presses = 0; // of the hotkey, that are under way
    const std::shared_ptr<MainThreadQueue> m_queue;
    BackgroundThreads m_threads;
};

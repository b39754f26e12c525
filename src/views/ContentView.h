#pragma once

#include "ModelManager.h"
#include "SummaryView.h"

#include <QWidget>

#include <functional>

class AppState;
class FileChooser;
class MainView;
class ModelSetupView;
class QLabel;
class QStackedWidget;
class Theme;

/// What the popover shows: the setup until the model is ready, then the main view. It leaves Escape
/// to the popover. Main thread.
class ContentView : public QWidget
{
    Q_OBJECT

public:
    static constexpr QSize extent{460, 640};

    struct Actions
    {
        std::function<void()> quit;
        SummaryView::OpenLink openLink; // http, https and mailto only
        /// Whether the footer may promise the hotkey.
        std::function<bool()> hasHotkey = [] { return true; };
    };

    /// Requires: `state` and `theme` outlive this view.
    ContentView(AppState& state, const Theme& theme, const Actions& actions,
                QWidget* parent = nullptr);

    void setModelState(const ModelManager::State& state);

    /// Shows the state of `models` from now on, and lets the user start the download. Requires:
    /// `models` outlives this view.
    void follow(ModelManager& models);

    /// Gives the focus to what the user most likely wants first. This also happens by itself when
    /// the view is first shown, and whenever what has the focus can no longer have it.
    void takeFocus();

    /// The chooser of documents, whose window may belong to another process.
    const FileChooser& chooser() const { return *m_chooser; }

    /// The size that the view is designed for. It can do with less height.
    QSize sizeHint() const override { return extent; }

signals:
    void startRequested();

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void showHint() const;
    QLayout* makeHeader(const Theme& theme);
    QLayout* makeFooter(const Theme& theme, const std::function<void()>& quit);

    const std::function<bool()> m_hasHotkey;
    FileChooser* m_chooser;
    QLabel* m_hint; // the hint in the footer
    QStackedWidget* m_body;
    ModelSetupView* m_setup;
    MainView* m_main;
};

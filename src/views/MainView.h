#pragma once

#include "StateView.h"
#include "SummaryMode.h"
#include "SummaryView.h"

#include <QTimer>

class FileChooser;
class Label;
class OneLineLabel;
class PushButton;
class QStackedWidget;
class QVBoxLayout;
class SegmentedControl;
class StopSlider;

/// The main view: where to take text from, how to summarise it, and the summary. Main thread.
class MainView : public StateView
{
    Q_OBJECT

public:
    MainView(AppState& state, const Theme& theme, FileChooser& chooser,
             SummaryView::OpenLink openLink, QWidget* parent = nullptr);

    /// Does what Return does when nothing else uses it: clicks Summarize.
    void performDefault();

    /// Gives the focus to the first control of the present tab, else to Stop or Summarize.
    void takeFocus();

    /// Gives the focus to a useful control when the one that had it is gone: during a run to Stop,
    /// else as takeFocus() does.
    void replaceFocus();

protected:
    void refresh() final;

private:
    void addTabs(QVBoxLayout& column, const Theme& theme, FileChooser& chooser);
    void addControls(QVBoxLayout& column, const Theme& theme);
    QWidget* makeLengthRow(const Theme& theme);
    QWidget* makeActionRow(const Theme& theme);
    void showSource();
    void showSourceLater();
    void showActions();
    void rerun();

    SegmentedControl* m_tabs;
    QStackedWidget* m_pages;
    SegmentedControl* m_modes;
    StopSlider* m_length;
    Label* m_lengthLabel;
    OneLineLabel* m_source;
    QTimer m_sourceTimer;
    QString m_lastSource; // the text when the timer was started
    PushButton* m_stop;
    PushButton* m_summarize;
    SummaryMode m_knownMode;
    double m_knownLength;
};

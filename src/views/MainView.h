#pragma once

#include "StateView.h"
#include "SummaryMode.h"
#include "SummaryView.h"

#include <QTimer>

class Label;
class OneLineLabel;
class PushButton;
class QStackedWidget;
class QVBoxLayout;
class SegmentedControl;
class StopSlider;

/// Where to take text from, how to summarise it, and the summary. Main thread.
class MainView : public StateView
{
    Q_OBJECT

public:
    MainView(AppState& state, const Theme& theme, SummaryView::OpenLink openLink,
             QWidget* parent = nullptr);

    /// What Return does wherever it has no use of its own.
    void performDefault();

    /// Gives the focus to what the present tab begins with, else to Stop or Summarize.
    void takeFocus();

    /// Gives the focus to what is of use in place of a control that has gone: Stop during a run,
    /// which ends it, else as `takeFocus`.
    void replaceFocus();

signals:
    /// The file chooser is on the screen between these two.
    void chooserOpened();
    void chooserClosed();

protected:
    void refresh() final;

private:
    void addTabs(QVBoxLayout& column, const Theme& theme);
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
    QString m_lastSource; // as it was when the timer was started
    PushButton* m_stop;
    PushButton* m_summarize;
    SummaryMode m_knownMode;
    double m_knownLength;
};

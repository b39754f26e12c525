#pragma once

#include "StateView.h"
#include "SummaryView.h"

class FramedArea;
class MessageView;
class OneLineLabel;
class QStackedLayout;

/// The summary, or what is shown in its place; the buttons for using it; and a line of news. Main
/// thread.
class OutputPanel : public StateView
{
    Q_OBJECT

public:
    OutputPanel(AppState& state, const Theme& theme, SummaryView::OpenLink openLink,
                QWidget* parent = nullptr);

protected:
    void refresh() final;
    void showEvent(QShowEvent* event) override;

private:
    FramedArea* makeFrame(const Theme& theme, SummaryView::OpenLink openLink);
    QWidget* makeProgress(const Theme& theme);
    QWidget* makeActions(const Theme& theme);
    void showContent();
    void enableActions();
    void showNews();
    void tellNews();

    QStackedLayout* m_pages;
    MessageView* m_error;
    QWidget* m_progress;
    OneLineLabel* m_progressStatus;
    QWidget* m_placeholder;
    SummaryView* m_summary;
    QWidget* m_actions;
    OneLineLabel* m_news;
    QString m_shown;                  // the output that m_summary shows
    std::optional<QString> m_failure; // as last told, and so are the next two
    QString m_toldStatus;
    std::optional<QString> m_toldToast;
    bool m_isStreaming = false;
};

#include "OutputPanel.h"

#include "Announcement.h"
#include "AppState.h"
#include "Focus.h"
#include "FocusRing.h"
#include "FramedArea.h"
#include "Make.h"
#include "MessageView.h"
#include "OneLineLabel.h"
#include "PushButton.h"
#include "Spinner.h"

#include <QHBoxLayout>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <array>

namespace {

constexpr int spacing = 8;
constexpr int padding = 12;
constexpr int outline = 1;

struct Action
{
    const char* name;
    const char* text;
    Symbol symbol;
    void (AppState::*perform)();
};

constexpr std::array choices = {
    Action{"copyMarkdown", "Copy Markdown", Symbol::copy, &AppState::copyMarkdown},
    Action{"dailyNote", "Daily Note", Symbol::notePlus, &AppState::appendToDailyNote},
    Action{"replaceClipboard", "Replace Clipboard", Symbol::twoArrows, &AppState::replaceClipboard},
};

} // namespace

OutputPanel::OutputPanel(AppState& state, const Theme& theme, SummaryView::OpenLink openLink,
                         QWidget* parent)
    : StateView(state, parent)
{
    auto* const column = Make::layout<QVBoxLayout>(this, spacing);
    column->addWidget(makeFrame(theme, std::move(openLink)), 1);
    m_actions = makeActions(theme);
    column->addWidget(m_actions, 0, Qt::AlignHCenter);
    m_news =
        Make::named<OneLineLabel>("news", theme, TextStyle::caption, ColorRole::secondary, this);
    m_news->setAlignment(Qt::AlignCenter);
    column->addWidget(m_news);
    refresh();
}

FramedArea* OutputPanel::makeFrame(const Theme& theme, SummaryView::OpenLink openLink)
{
    auto* const frame = Make::named<FramedArea>("outputFrame", theme, this);
    m_pages = new QStackedLayout;
    Make::layout<QVBoxLayout>(frame, 0, {outline, outline, outline, outline})->addLayout(m_pages);

    auto* const placeholder =
        Make::named<Label>("outputPlaceholder", theme, TextStyle::body, ColorRole::tertiary,
                           QStringLiteral("Your summary will appear here."), frame);
    placeholder->setAlignment(Qt::AlignCenter);
    m_placeholder = placeholder;
    m_error = Make::named<MessageView>("error", theme, TextStyle::body, ColorRole::error, frame);
    auto* const errorPage = new QWidget(frame);
    constexpr int inside = padding - outline;
    Make::layout<QVBoxLayout>(errorPage, 0, {inside, inside, inside, inside})->addWidget(m_error);
    m_progress = makeProgress(theme);
    m_summary = Make::named<SummaryView>("summary", theme, std::move(openLink), frame);
    m_summary->setAccessibleName(QStringLiteral("Summary"));
    FocusRing::outline(*m_error, *frame, FramedArea::radius);
    FocusRing::outline(*m_summary, *frame, FramedArea::radius);
    for (QWidget* page : {m_placeholder, errorPage, m_progress, static_cast<QWidget*>(m_summary)})
        m_pages->addWidget(page);
    return frame;
}

QWidget* OutputPanel::makeProgress(const Theme& theme)
{
    auto* const page = Make::named<QWidget>("progress", this);
    m_progressStatus = Make::named<OneLineLabel>("progressStatus", theme, TextStyle::caption,
                                                 ColorRole::secondary, page);
    m_progressStatus->setAlignment(Qt::AlignCenter);
    auto* const column =
        Make::layout<QVBoxLayout>(page, spacing, {padding, padding, padding, padding});
    column->addStretch();
    column->addWidget(new Spinner(theme, page), 0, Qt::AlignHCenter);
    column->addWidget(m_progressStatus);
    column->addStretch();
    return page;
}

QWidget* OutputPanel::makeActions(const Theme& theme)
{
    auto* const bar = Make::named<QWidget>("outputActions", this);
    auto* const row = Make::layout<QHBoxLayout>(bar, spacing);
    for (const Action& action : choices) {
        auto* const button = Make::named<PushButton>(
            action.name, theme, QString::fromUtf8(action.text), bar, PushButton::Size::small);
        button->setSymbol(action.symbol);
        connect(button, &QPushButton::clicked, &state(), action.perform);
        row->addWidget(button);
    }
    return bar;
}

void OutputPanel::refresh()
{
    showContent();
    enableActions();
    showNews();
    tellNews();
}

/// Tells the status again: what was told may have been lost with the window, which is away while
/// the screen is captured.
void OutputPanel::showEvent(QShowEvent*)
{
    m_toldStatus.clear();
    tellNews();
}

void OutputPanel::enableActions()
{
    const bool isEnabled = !state().output->isEmpty() && !state().isWorking;
    const bool hadFocus = Focus::isIn(*m_actions);
    m_actions->setEnabled(isEnabled);
    if (hadFocus && !isEnabled)
        focusNextChild();
}

void OutputPanel::showContent()
{
    const QString& output = state().output;
    // Also while another page is shown, so that a new summary begins at its top.
    if (!output.isSharedWith(m_shown)) {
        m_shown = output;
        m_summary->setMarkdown(output);
    }
    const std::optional<QString>& error = state().errorMessage;
    const bool isNewError = error != m_failure;
    m_failure = error;
    if (error && isNewError)
        m_error->setMessage(*error);
    const bool isWaiting = !error && output.isEmpty() && state().isWorking;
    QWidget* page = m_summary;
    if (error)
        page = m_error->parentWidget();
    else if (isWaiting)
        page = m_progress;
    else if (output.isEmpty())
        page = m_placeholder;
    const bool hadFocus = Focus::isIn(*m_pages->currentWidget());
    m_pages->setCurrentWidget(page);
    if (hadFocus && Focus::isLost(*this))
        focusNextChild();

    if (error && isNewError) {
        m_error->setAccessibleName(*error);
        Announcement::tell(*m_error, *error);
    }
    m_progressStatus->setText(isWaiting ? state().status.get() : QString());
    const bool isStreaming = state().isWorking;
    if (m_isStreaming && !isStreaming && page == m_summary)
        Announcement::tell(*m_summary, QStringLiteral("Summary: ") + m_summary->toPlainText());
    m_isStreaming = isStreaming;
}

void OutputPanel::showNews()
{
    QString news = QStringLiteral(" ");
    if (state().toast.get())
        news = *state().toast.get();
    else if (state().isWorking && !state().output->isEmpty())
        news = state().status;
    m_news->setText(news);
}

/// Tells screen readers about a new status or toast. A status is told only once, although it moves
/// from one place to another.
void OutputPanel::tellNews()
{
    const QString status = state().isWorking ? state().status.get() : QString();
    if (!status.isEmpty() && status != m_toldStatus)
        Announcement::tell(*this, status);
    m_toldStatus = status;
    const std::optional<QString>& toast = state().toast;
    if (toast && toast != m_toldToast)
        Announcement::tell(*this, *toast);
    m_toldToast = toast;
}

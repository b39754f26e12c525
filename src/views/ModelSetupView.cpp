#include "ModelSetupView.h"

#include "Announcement.h"
#include "Focus.h"
#include "FocusRing.h"
#include "Label.h"
#include "Make.h"
#include "MessageView.h"
#include "PlatformWords.h"
#include "ProgressBar.h"
#include "PushButton.h"
#include "SentenceLabel.h"
#include "SymbolView.h"

#include <QVBoxLayout>

static constexpr int spacing = 14;
static constexpr int symbolSize = 42;
static constexpr int textPadding = 30;
static constexpr int barPadding = 50;
static constexpr int ringRadius = 4;

ModelSetupView::ModelSetupView(const Theme& theme, QWidget* parent) : QWidget(parent)
{
    auto* const column = Make::layout<QVBoxLayout>(this, spacing);
    column->addStretch();
    column->addWidget(
        new SymbolView(theme, Symbol::circledArrow, symbolSize, ColorRole::accent, this), 0,
        Qt::AlignHCenter);
    column->addWidget(new Label(theme, TextStyle::title, ColorRole::label,
                                QStringLiteral("Setting up the on-device model"), this),
                      0, Qt::AlignHCenter);
    auto* const text = new SentenceLabel(theme, TextStyle::body, ColorRole::secondary,
                                         QString::fromUtf8(platformWords.modelSetup), this);
    text->setContentsMargins(textPadding, 0, textPadding, 0);
    column->addWidget(text);
    addProgress(theme);
    addFailure(theme);
    column->addStretch();
    setState(ModelManager::Idle{});
}

void ModelSetupView::addProgress(const Theme& theme)
{
    m_progress = Make::named<QWidget>("download", this);
    m_bar = Make::named<ProgressBar>("downloadBar", theme, m_progress);
    m_bar->setAccessibleName(QStringLiteral("Download of the model"));
    m_bar->setFocusPolicy(Qt::TabFocus); // else only Quit could have the focus
    FocusRing::outline(*m_bar, *m_bar, ringRadius);
    m_percentage = Make::named<Label>("percentage", theme, TextStyle::caption, ColorRole::secondary,
                                      QString(), m_progress);
    m_percentage->setAlignment(Qt::AlignCenter);
    auto* const column =
        Make::layout<QVBoxLayout>(m_progress, spacing, {barPadding, 0, barPadding, 0});
    column->addWidget(m_bar);
    column->addWidget(m_percentage);
    layout()->addWidget(m_progress);
}

void ModelSetupView::addFailure(const Theme& theme)
{
    auto* const column = static_cast<QVBoxLayout*>(layout());
    m_message =
        Make::named<MessageView>("setupError", theme, TextStyle::caption, ColorRole::error, this);
    FocusRing::outline(*m_message, *m_message, ringRadius);
    auto* const row = Make::layout<QHBoxLayout>(nullptr, 0, {textPadding, 0, textPadding, 0});
    row->addWidget(m_message);
    column->addLayout(row);
    m_button = Make::named<PushButton>("startDownload", theme, QString(), this);
    m_button->setDefault(true);
    column->addWidget(m_button, 0, Qt::AlignHCenter);
    connect(m_button, &QPushButton::clicked, this, &ModelSetupView::startRequested);
}

void ModelSetupView::showParts(bool isDownloading, bool isFailed)
{
    const bool hadFocus = Focus::isIn(*this);
    const bool isReading = isFailed && Focus::isIn(*m_message);
    QWidget* const shown = isDownloading ? m_progress : m_button;
    QWidget* const hidden = isDownloading ? static_cast<QWidget*>(m_button) : m_progress;
    setFocusProxy(isDownloading ? static_cast<QWidget*>(m_bar) : m_button);
    shown->show();
    // Before the other part is hidden: the focus would go to whatever comes next, and that is Quit.
    if (hadFocus && !isReading)
        setFocus(Qt::OtherFocusReason);
    hidden->hide();
    m_message->setVisible(isFailed);
}

void ModelSetupView::setState(const ModelManager::State& state)
{
    const auto* const downloading = std::get_if<ModelManager::Downloading>(&state);
    const auto* const failed = std::get_if<ModelManager::Failed>(&state);
    if (downloading) {
        m_bar->setFraction(downloading->progress);
        // Rounded down, so that 100 is not told before everything is there.
        const int percent = static_cast<int>(downloading->progress * 100);
        m_percentage->setText(QStringLiteral("%1%").arg(percent));
    }
    m_button->setText(failed ? QStringLiteral("Retry") : QStringLiteral("Download model"));
    showParts(downloading, failed);
    if (failed) {
        const QString message = QString::fromStdString(failed->message);
        m_message->setMessage(message);
        m_message->setAccessibleName(message);
        Announcement::tell(*m_message, message);
    }
}

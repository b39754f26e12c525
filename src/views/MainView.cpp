#include "MainView.h"

#include "AppState.h"
#include "CaptureTab.h"
#include "ClipboardTab.h"
#include "DocumentTab.h"
#include "Focus.h"
#include "Make.h"
#include "OneLineLabel.h"
#include "OutputPanel.h"
#include "PushButton.h"
#include "QtText.h"
#include "SegmentedControl.h"
#include "StopSlider.h"
#include "WebTab.h"

#include <QHBoxLayout>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <cmath>

namespace {

constexpr int padding = 12;
constexpr int spacing = 10;
constexpr int tabHeight = 130;
constexpr int controlSpacing = 8;
constexpr int lengthLabelWidth = 60;

/// The words of texts with more characters are counted only when typing pauses for this long.
constexpr qsizetype mostCountedAtOnce = 1'000'000;
constexpr std::chrono::milliseconds typingPause(200);

/// The icons of the tabs, in the order of AppState::allTabs.
constexpr std::array tabSymbols = {Symbol::clipboard, Symbol::document, Symbol::globe,
                                   Symbol::viewfinder};

std::vector<SegmentedControl::Choice> tabChoices()
{
    std::vector<SegmentedControl::Choice> choices;
    for (const AppState::Tab tab : AppState::allTabs)
        choices.push_back(
            {QtText::fromUtf8(AppState::rawValue(tab)), tabSymbols.at(choices.size())});
    return choices;
}

std::vector<SegmentedControl::Choice> modeChoices()
{
    std::vector<SegmentedControl::Choice> choices;
    for (const SummaryMode mode : allSummaryModes)
        choices.push_back({QtText::fromUtf8(rawValue(mode))});
    return choices;
}

} // namespace

MainView::MainView(AppState& state, const Theme& theme, FileChooser& chooser,
                   SummaryView::OpenLink openLink, QWidget* parent)
    : StateView(state, parent), m_knownMode(state.mode), m_knownLength(state.length)
{
    auto* const column =
        Make::layout<QVBoxLayout>(this, spacing, {padding, padding, padding, padding});
    addTabs(*column, theme, chooser);
    addControls(*column, theme);
    column->addWidget(Make::named<OutputPanel>("output", state, theme, std::move(openLink), this),
                      1);
    refresh();
}

void MainView::addTabs(QVBoxLayout& column, const Theme& theme, FileChooser& chooser)
{
    m_tabs = Make::named<SegmentedControl>("tabs", theme, tabChoices(), this);
    m_tabs->setAccessibleName(QStringLiteral("Source"));
    connect(m_tabs, &SegmentedControl::indexChanged, this, [this](int index) {
        const AppState::Tab tab = AppState::allTabs.at(static_cast<std::size_t>(index));
        if (state().tab != tab)
            state().tab = tab;
    });
    column.addWidget(m_tabs);

    m_pages = Make::named<QStackedWidget>("tabArea", this);
    m_pages->setFixedHeight(tabHeight);
    m_pages->addWidget(new ClipboardTab(state(), theme, m_pages));
    m_pages->addWidget(new DocumentTab(state(), theme, chooser, m_pages));
    m_pages->addWidget(new WebTab(state(), theme, m_pages));
    m_pages->addWidget(new CaptureTab(state(), theme, m_pages));
    column.addWidget(m_pages);
}

void MainView::addControls(QVBoxLayout& column, const Theme& theme)
{
    auto* const controls = Make::layout<QVBoxLayout>(nullptr, controlSpacing);
    m_modes = Make::named<SegmentedControl>("modes", theme, modeChoices(), this);
    m_modes->setAccessibleName(QStringLiteral("Kind of summary"));
    connect(m_modes, &SegmentedControl::indexChanged, this, [this](int index) {
        const SummaryMode mode = allSummaryModes.at(static_cast<std::size_t>(index));
        if (state().mode != mode)
            state().mode = mode;
    });
    controls->addWidget(m_modes);
    controls->addWidget(makeLengthRow(theme));
    controls->addWidget(makeActionRow(theme));
    column.addLayout(controls);
}

QWidget* MainView::makeLengthRow(const Theme& theme)
{
    auto* const row = new QWidget(this);
    auto* const title =
        new Label(theme, TextStyle::caption, ColorRole::secondary, QStringLiteral("Length"), row);
    m_length = Make::named<StopSlider>("length", theme, row);
    m_length->setAccessibleName(QStringLiteral("Length"));
    m_lengthLabel = Make::named<Label>("lengthLabel", theme, TextStyle::boldCaption,
                                       ColorRole::label, QString(), row);
    m_lengthLabel->setFixedWidth(lengthLabelWidth);
    connect(m_length, &QSlider::valueChanged, this, [this](int value) {
        if (std::lround(state().length) != value)
            state().length = value;
    });
    auto* const layout = Make::layout<QHBoxLayout>(row, controlSpacing);
    layout->addWidget(title);
    layout->addWidget(m_length, 1);
    layout->addWidget(m_lengthLabel);
    return row;
}

QWidget* MainView::makeActionRow(const Theme& theme)
{
    auto* const row = new QWidget(this);
    m_source = Make::named<OneLineLabel>("sourceLine", theme, TextStyle::caption,
                                         ColorRole::secondary, row);
    m_sourceTimer.setSingleShot(true);
    m_sourceTimer.setInterval(typingPause);
    connect(&m_sourceTimer, &QTimer::timeout, this, &MainView::showSource);
    m_stop = Make::named<PushButton>("stop", theme, QStringLiteral("Stop"), row);
    m_summarize = Make::named<PushButton>("summarize", theme, QStringLiteral("Summarize"), row);
    m_summarize->setDefault(true);
    connect(m_stop, &QPushButton::clicked, &state(), &AppState::stop);
    connect(m_summarize, &QPushButton::clicked, &state(), &AppState::summarize);
    auto* const layout = Make::layout<QHBoxLayout>(row, controlSpacing);
    layout->addWidget(m_source, 1);
    layout->addWidget(m_stop);
    layout->addWidget(m_summarize);
    return row;
}

void MainView::refresh()
{
    const int tab = static_cast<int>(state().tab.get());
    const bool hadTabFocus = Focus::isIn(*m_pages);
    m_tabs->setIndex(tab);
    m_pages->setCurrentIndex(tab);
    m_modes->setIndex(static_cast<int>(state().mode.get()));
    const SummaryLength length = state().lengthValue();
    m_length->setValue(static_cast<int>(length));
    const QString lengthText = QtText::fromUtf8(label(length));
    m_lengthLabel->setText(lengthText);
    if (m_length->accessibleDescription() != lengthText) // else it would be told again
        m_length->setAccessibleDescription(lengthText);
    showActions();
    if (hadTabFocus && Focus::isLost(*this))
        takeFocus(); // the tab that is now hidden had the focus
    if (state().mode != m_knownMode || state().length != m_knownLength) {
        m_knownMode = state().mode;
        m_knownLength = state().length;
        rerun();
    }
}

void MainView::showSource()
{
    const bool isEmpty = state().sourceText->isEmpty();
    m_source->setText(
        isEmpty ? QString()
                : QStringLiteral("%1 · %2 words")
                      .arg(state().sourceLabel.get(), QString::number(state().wordCount())));
}

void MainView::showSourceLater()
{
    const QString& text = state().sourceText;
    if (text.size() <= mostCountedAtOnce) {
        m_sourceTimer.stop();
        showSource();
    } else if (!text.isSharedWith(m_lastSource)) {
        m_lastSource = text;
        m_sourceTimer.start();
    } else if (!m_sourceTimer.isActive()) {
        showSource(); // cheap, because this text has been counted
    }
}

void MainView::showActions()
{
    showSourceLater();
    const bool isWorking = state().isWorking;
    m_summarize->setEnabled(!state().sourceText->isEmpty());
    QWidget* const shown = isWorking ? m_stop : m_summarize;
    QWidget* const hidden = isWorking ? m_summarize : m_stop;
    const bool wasFocused = Focus::isIn(*hidden);
    shown->show();
    if (wasFocused)
        shown->setFocus();
    hidden->hide();
    // Lays out at once, so that the shown button is never drawn in the place of the hidden one.
    shown->parentWidget()->layout()->activate();
}

void MainView::rerun()
{
    if (!state().sourceText->isEmpty() && !state().output->isEmpty() && !state().isWorking)
        state().summarize();
}

void MainView::performDefault()
{
    if (!m_summarize->isHidden())
        m_summarize->click();
}

void MainView::takeFocus()
{
    for (QWidget* widget : {m_pages->currentWidget()->focusProxy(), static_cast<QWidget*>(m_stop),
                            static_cast<QWidget*>(m_summarize)}) {
        while (widget->focusProxy())
            widget = widget->focusProxy();
        if (widget->isEnabled() && widget->isVisibleTo(this))
            return widget->setFocus(Qt::OtherFocusReason);
    }
}

void MainView::replaceFocus()
{
    if (m_stop->isHidden())
        takeFocus();
    else
        m_stop->setFocus(Qt::OtherFocusReason);
}

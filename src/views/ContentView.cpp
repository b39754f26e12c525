#include "ContentView.h"

#include "Divider.h"
#include "FileChooser.h"
#include "Focus.h"
#include "FocusRing.h"
#include "Label.h"
#include "LinkButton.h"
#include "MainView.h"
#include "Make.h"
#include "ModelSetupView.h"
#include "PlatformWords.h"
#include "ProgramName.h"
#include "SymbolView.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

static constexpr int sidePadding = 14;
static constexpr int headerPadding = 10;
static constexpr int footerPadding = 6;
static constexpr int titleSpacing = 8;
static constexpr int symbolSize = 16;
static constexpr int noteSymbolSize = 12;
static constexpr int noteSpacing = 4;

ContentView::ContentView(AppState& state, const Theme& theme, const Actions& actions,
                         QWidget* parent)
    : QWidget(parent), m_hasHotkey(actions.hasHotkey), m_chooser(new FileChooser(*this))
{
    resize(extent);
    theme.applyTo(*this);
    auto* const column = Make::layout<QVBoxLayout>(this, 0);
    column->addLayout(makeHeader(theme));
    column->addWidget(new Divider(theme, this));
    m_body = new QStackedWidget(this);
    m_setup = Make::named<ModelSetupView>("setup", theme, m_body);
    m_main = Make::named<MainView>("main", state, theme, *m_chooser, actions.openLink, m_body);
    m_body->addWidget(m_setup);
    m_body->addWidget(m_main);
    column->addWidget(m_body, 1);
    column->addWidget(new Divider(theme, this));
    column->addLayout(makeFooter(theme, actions.quit));
    new FocusRing(theme, *this);
    connect(m_setup, &ModelSetupView::startRequested, this, &ContentView::startRequested);
}

QLayout* ContentView::makeHeader(const Theme& theme)
{
    auto* const row = Make::layout<QHBoxLayout>(
        nullptr, titleSpacing, {sidePadding, headerPadding, sidePadding, headerPadding});
    row->addWidget(new SymbolView(theme, Symbol::quotation, symbolSize, ColorRole::accent, this));
    row->addWidget(new Label(theme, TextStyle::headline, ColorRole::label,
                             QString::fromUtf8(programName), this));
    row->addStretch();
    auto* const note = Make::layout<QHBoxLayout>(nullptr, noteSpacing);
    note->addWidget(
        new SymbolView(theme, Symbol::lockShield, noteSymbolSize, ColorRole::secondary, this));
    note->addWidget(new Label(theme, TextStyle::caption, ColorRole::secondary,
                              QStringLiteral("On-device"), this));
    row->addLayout(note);
    return row;
}

QLayout* ContentView::makeFooter(const Theme& theme, const std::function<void()>& quit)
{
    auto* const row = new QHBoxLayout;
    // The text of the button ends at the side padding, not its clickable area.
    row->setContentsMargins(sidePadding, footerPadding, sidePadding - LinkButton::padding,
                            footerPadding);
    m_hint = new Label(theme, TextStyle::smallCaption, ColorRole::secondary, {}, this);
    showHint();
    row->addWidget(m_hint);
    row->addStretch();
    auto* const button = Make::named<LinkButton>("quit", theme, QStringLiteral("Quit"), this);
    connect(button, &QPushButton::clicked, this, quit);
    row->addWidget(button);
    return row;
}

void ContentView::showHint() const
{
    m_hint->setText(
        QString::fromUtf8(m_hasHotkey() ? platformWords.hotkey : platformWords.withoutHotkey));
}

void ContentView::setModelState(const ModelManager::State& state)
{
    const QWidget* const focused = window()->focusWidget();
    // If a button of the setup has been pressed and is gone, nothing has the focus.
    const bool hadFocus = focused == nullptr || m_body->isAncestorOf(focused);
    m_setup->setState(state);
    QWidget* const shown = std::holds_alternative<ModelManager::Ready>(state)
                               ? static_cast<QWidget*>(m_main)
                               : m_setup;
    const bool isAnother = shown != m_body->currentWidget();
    m_body->setCurrentWidget(shown);
    if (hadFocus && (isAnother || Focus::isLost(*this)))
        takeFocus();
}

void ContentView::follow(ModelManager& models)
{
    connect(&models, &ModelManager::stateChanged, this,
            [this, &models] { setModelState(models.state()); });
    connect(this, &ContentView::startRequested, &models, &ModelManager::start);
    setModelState(models.state());
}

void ContentView::takeFocus()
{
    if (m_body->currentWidget() == m_main)
        m_main->takeFocus();
    else
        m_setup->setFocus(Qt::OtherFocusReason);
}

/// Keeps the focus where the user has left it. If it is lost, gives it to what is of most use.
void ContentView::showEvent(QShowEvent*)
{
    showHint();
    if (Focus::isLost(*this))
        takeFocus();
}

bool ContentView::event(QEvent* event)
{
    // What had the focus may be gone by now. Then Qt is about to give the focus to whatever comes
    // next.
    if (event->type() == QEvent::WindowActivate && Focus::isLost(*this))
        takeFocus();
    return QWidget::event(event);
}

/// Qt calls this for Tab, but also when what has the focus is hidden or disabled. What comes next
/// may then be Quit, so that the next key would end the program.
bool ContentView::focusNextPrevChild(bool next)
{
    if (!Focus::isLost(*this))
        return QWidget::focusNextPrevChild(next);
    if (m_body->currentWidget() == m_main)
        m_main->replaceFocus();
    else
        takeFocus();
    return true;
}

/// Handles keys that nothing inside has used.
void ContentView::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!isReturn || !isPlain)
        return event->ignore();
    if (auto* const button = qobject_cast<QPushButton*>(window()->focusWidget())) {
        // A key that is held down would also press what takes this button's place.
        if (!event->isAutoRepeat())
            button->click();
    } else if (m_body->currentWidget() == m_main) {
        m_main->performDefault();
    }
}

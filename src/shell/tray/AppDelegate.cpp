#include "AppDelegate.h"

#include "AppState.h"
#include "HotKey.h"
#include "ModelManager.h"
#include "PopoverPlace.h"
#include "QuotationMark.h"
#include "Theme.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>

#include <utility>
#include <variant>

/// The monitor that `point` is on, else the first one.
static PopoverPlace::Monitor monitorAt(const QPoint& point)
{
    const QScreen* screen = QGuiApplication::screenAt(point);
    if (screen == nullptr)
        screen = QGuiApplication::primaryScreen();
    return {screen->geometry(), screen->availableGeometry()};
}

AppDelegate::AppDelegate(AppState& state, ModelManager& model, const Theme& theme,
                         MakeContent makeContent)
    : m_state(state), m_model(model), m_theme(theme), m_makeContent(std::move(makeContent))
{}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    drawIcon();
    connect(&m_theme, &Theme::changed, this, &AppDelegate::drawIcon);
    m_icon = std::make_unique<TrayIcon>(m_theme);
    connect(m_icon.get(), &TrayIcon::clicked, this, &AppDelegate::clickedIcon);
    m_popover = std::make_unique<Popover>(m_makeContent());
    m_outsideClicks = OutsideClicks::create([this] { clickedOutside(); });
    HotKey::install([delegate = QPointer(this)] {
        if (delegate)
            delegate->handleHotkey();
    });
    const ModelManager::State& model = m_model.state();
    if (std::holds_alternative<ModelManager::Idle>(model) ||
        std::holds_alternative<ModelManager::Failed>(model))
        m_model.start();
}

/// Sets the icon of all our windows.
void AppDelegate::drawIcon() const
{
    QGuiApplication::setWindowIcon(QuotationMark::icon(m_theme.appearance().isDark));
}

void AppDelegate::togglePopover()
{
    if (isSeen())
        m_popover->dismiss();
    else if (!wasClosedByThisClick())
        showPopover();
}

void AppDelegate::showPopover()
{
    // A panel may report the press on an icon before the button is released. That release must not
    // close the popover.
    if (!isSeen())
        m_outsideClicks->forget();
    m_popover->showAt(findPlace());
    m_popover->takeFocus();
}

void AppDelegate::clickedIcon()
{
    if (!m_icon->geometry().isValid())
        m_lastClick = QCursor::pos();
    else
        m_sinceClosed.invalidate(); // our own window: a click on it has closed nothing
    togglePopover();
}

void AppDelegate::clickedOutside()
{
    if (isSeen())
        m_sinceClosed.start();
    else
        m_sinceClosed.invalidate();
    if (m_popover->isOpen())
        m_popover->dismiss();
}

/// Whether the popover is open on the workspace that the user looks at.
bool AppDelegate::isSeen() const
{
    return m_popover->isOpen() && m_popover->isHere();
}

/// Whether the click that leads here has just closed the popover. A panel of another process
/// reports a click on our icon, or starts us once more, only after the mouse has closed the
/// popover.
bool AppDelegate::wasClosedByThisClick() const
{
    constexpr qint64 click = 500; // milliseconds
    return m_sinceClosed.isValid() && m_sinceClosed.elapsed() < click;
}

QRect AppDelegate::findPlace() const
{
    QRect icon = m_icon->geometry();
    if (!icon.isValid() && m_lastClick)
        icon = QRect(*m_lastClick, QSize(1, 1));
    if (icon.isValid() && QGuiApplication::screenAt(icon.center()) != nullptr)
        return PopoverPlace::atIcon(icon, Popover::contentSize, monitorAt(icon.center()));
    return PopoverPlace::inCorner(Popover::contentSize, monitorAt(QCursor::pos()));
}

QCoro::Task<> AppDelegate::handleHotkey()
{
    const QPointer<AppDelegate> delegate(this);
    co_await m_state.handleHotkey();
    if (delegate)
        delegate->showPopover();
}

void AppDelegate::pauseOutsideClicks()
{
    if (m_pauses++ == 0)
        m_outsideClicks->pause();
}

void AppDelegate::resumeOutsideClicks()
{
    if (--m_pauses > 0)
        return;
    m_outsideClicks->resume();
    // Some window managers do not give the keyboard back to a window that is in no taskbar.
    if (m_popover->isOpen())
        m_popover->takeFocus();
}

bool AppDelegate::hideForCapture(std::optional<std::uint32_t> window)
{
    const bool isShown = m_popover->isOpen();
    const bool goes = isShown && (!window || m_popover->covers(*window));
    if (m_captures++ == 0)
        m_isShownAfterCapture = false;
    m_isShownAfterCapture |= goes;
    if (goes || !isShown)
        m_popover->hide(); // also if it is about to close
    return goes;
}

void AppDelegate::showAfterCapture()
{
    if (--m_captures == 0 && m_isShownAfterCapture)
        showPopover();
}

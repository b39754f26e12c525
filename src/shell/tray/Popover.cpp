#include "Popover.h"

#include "AccessibleRole.h"
#include "Desktop.h"
#include "OwnWindow.h"
#include "ProgramName.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

static constexpr int shadowWidth = 14;
static constexpr qreal radius = 10;

Popover::Popover(std::unique_ptr<QWidget> content)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::NoDropShadowWindowHint),
      m_content(content.release())
{
    // Screen readers ignore what has the focus if they find no window around it.
    AccessibleRole::set(*this, QAccessible::Window);
    setWindowTitle(QString::fromUtf8(programName));
    setObjectName(QStringLiteral("popover"));
    setAttribute(Qt::WA_TranslucentBackground);
    auto* const layout = new QVBoxLayout(this);
    // A work area may be smaller than the content would like to be.
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    layout->addWidget(m_content);
}

void Popover::showAt(const QRect& area)
{
    m_isClosing = false;
    if (isVisible())
        return;
    m_shadow = Desktop::isComposited() ? shadowWidth : 0;
    const int border = m_shadow + 1;
    layout()->setContentsMargins(border, border, border, border);
    setGeometry(area.marginsAdded({m_shadow, m_shadow, m_shadow, m_shadow}));
    layout()->activate();
    OwnWindow::keepOffLists(winId());
    show();
    windowHandle()->installEventFilter(this); // a second time has no effect
}

/// Waits until the window is shown. If a window is hidden and shown again before the window manager
/// has shown it, it may be shown nowhere afterwards: with openbox on a busy machine 9 times out of
/// 160.
void Popover::dismiss()
{
    constexpr int patience = 500; // milliseconds, in case the desktop never shows it
    if (!isVisible() || windowHandle()->isExposed())
        return hide();
    m_isClosing = true;
    QTimer::singleShot(patience, this, [this] { finishClosing(); });
}

void Popover::finishClosing()
{
    if (m_isClosing)
        hide();
}

bool Popover::eventFilter(QObject* window, QEvent* event)
{
    if (m_isClosing && event->type() == QEvent::Expose && windowHandle()->isExposed())
        QMetaObject::invokeMethod(this, &Popover::finishClosing, Qt::QueuedConnection);
    return QWidget::eventFilter(window, event);
}

void Popover::hideEvent(QHideEvent* event)
{
    m_isClosing = false;
    QWidget::hideEvent(event);
}

// The function called here is deprecated since Qt 6.5, but nothing replaces it.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
static void makeActive(QWidget* window)
{
    QApplication::setActiveWindow(window);
}
QT_WARNING_POP

bool Popover::isHere() const
{
    return OwnWindow::isHere(internalWinId());
}

bool Popover::covers(std::uint32_t window) const
{
    return OwnWindow::covers(internalWinId(), window);
}

void Popover::takeFocus()
{
    OwnWindow::bringHere(winId());
    raise();
    activateWindow();
    // Qt takes a moment to notice that a hidden window has lost the focus. If the window gets the
    // focus back sooner than that, Qt does not notice it.
    if (QGuiApplication::focusWindow() == windowHandle())
        makeActive(this);
}

QRect Popover::card() const
{
    return rect().marginsRemoved({m_shadow, m_shadow, m_shadow, m_shadow});
}

void Popover::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Cancel))
        dismiss();
    else
        QWidget::keyPressEvent(event);
}

void Popover::mousePressEvent(QMouseEvent* event)
{
    if (!card().contains(event->position().toPoint()))
        dismiss(); // the shadow is no part of the popover
}

void Popover::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QPalette& palette = m_content->palette();
    QColor line = palette.color(QPalette::WindowText);
    line.setAlphaF(0.16F);
    if (m_shadow == 0) {
        painter.fillRect(rect(), palette.window());
        painter.setPen(line);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    paintShadow(painter);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.window());
    painter.drawRoundedRect(card(), radius, radius);
    painter.setPen(line);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(card()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

/// Draws rings that add up to a shadow, darkest at the card and a little lower than it.
void Popover::paintShadow(QPainter& painter) const
{
    constexpr int drop = 2;
    const QRectF base = QRectF(card()).translated(0, drop);
    painter.save();
    painter.setPen(Qt::NoPen);
    for (int spread = m_shadow - drop; spread > 0; --spread) {
        const qreal distance = qreal(spread) / (m_shadow - drop);
        painter.setBrush(QColor(0, 0, 0, qRound(7 * (1 - distance) + 1)));
        painter.drawRoundedRect(base.adjusted(-spread, -spread, spread, spread), radius + spread,
                                radius + spread);
    }
    painter.restore();
}

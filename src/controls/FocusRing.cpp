#include "FocusRing.h"

#include "Drawing.h"

#include <QApplication>
#include <QEvent>

static constexpr const char* outlinedProperty = "pithwiseOutlined";
static constexpr const char* radiusProperty = "pithwiseOutlineRadius";
static constexpr int ringWidth = static_cast<int>(Drawing::focusWidth);

FocusRing::FocusRing(const Theme& theme, QWidget& window) : Themed(theme, &window)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* now) { follow(now); });
    follow(QApplication::focusWidget());
}

void FocusRing::outline(QWidget& focused, QWidget& outlined, int radius)
{
    focused.setProperty(outlinedProperty, QVariant::fromValue(&outlined));
    focused.setProperty(radiusProperty, radius);
}

void FocusRing::follow(QWidget* focused)
{
    for (const QPointer<QWidget>& widget : m_watched) {
        if (widget)
            widget->removeEventFilter(this);
    }
    m_watched.clear();
    m_outlined = focused ? focused->property(outlinedProperty).value<QWidget*>() : nullptr;
    if (!m_outlined || !parentWidget()->isAncestorOf(m_outlined)) {
        m_outlined = nullptr;
        hide();
        return;
    }
    m_radius = focused->property(radiusProperty).toInt();
    for (QWidget* widget = m_outlined; widget != parentWidget(); widget = widget->parentWidget()) {
        widget->installEventFilter(this);
        m_watched.append(widget);
    }
    place();
}

bool FocusRing::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
        place();
        break;
    default:
        break;
    }
    return false;
}

void FocusRing::place()
{
    if (!m_outlined)
        return;
    const QPoint corner = m_outlined->mapTo(parentWidget(), QPoint());
    setGeometry(
        QRect(corner, m_outlined->size()).adjusted(-ringWidth, -ringWidth, ringWidth, ringWidth));
    setVisible(m_outlined->isVisibleTo(parentWidget()));
    raise();
}

void FocusRing::paintEvent(QPaintEvent*)
{
    Drawing::Painter painter(*this);
    const QColor color = Drawing::faded(m_theme[ColorRole::accent], Drawing::focusOpacity);
    Drawing::edge(painter, rect(), m_radius + ringWidth, QPen(color, ringWidth));
}

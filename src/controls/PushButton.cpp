#include "PushButton.h"

#include "Drawing.h"
#include "Fade.h"
#include "FocusRing.h"
#include "Icon.h"

#include <QEvent>
#include <QStyle>

static constexpr int radius = 6;
static constexpr int symbolGap = 5;
static constexpr qreal accentHover = 0.08;
static constexpr qreal accentPressed = 0.20;

static int heightOf(PushButton::Size size)
{
    return size == PushButton::Size::small ? 20 : 24;
}

static int paddingOf(PushButton::Size size)
{
    return size == PushButton::Size::small ? 8 : 12;
}

static int symbolSizeOf(PushButton::Size size)
{
    return size == PushButton::Size::small ? 14 : 16;
}

PushButton::PushButton(const Theme& theme, const QString& text, QWidget* parent, Size size)
    : Themed(theme, text, parent),
      m_size(size),
      m_hover(new Fade(theme, *this)),
      m_press(new Fade(theme, *this))
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    FocusRing::outline(*this, *this, radius);
    setTextStyle(size == Size::small ? TextStyle::caption : TextStyle::body);
    connect(this, &QPushButton::pressed, m_press, [this] { m_press->moveTo(1); });
    connect(this, &QPushButton::released, m_press, [this] { m_press->moveTo(0); });
}

void PushButton::setSymbol(Symbol symbol)
{
    m_symbol = symbol;
    updateGeometry();
    update();
}

int PushButton::contentWidth() const
{
    const int symbol = m_symbol ? symbolSizeOf(m_size) + symbolGap : 0;
    return symbol + fontMetrics().size(Qt::TextShowMnemonic, text()).width();
}

/// Whether the button is filled with the accent. A disabled button is not, because it would be hard
/// to read.
bool PushButton::isAccented() const
{
    return isDefault() && isEnabled();
}

QSize PushButton::sizeHint() const
{
    // A button with an icon looks equally padded with a little less space beside it.
    const int paddings = 2 * paddingOf(m_size) - (m_symbol ? 2 : 0);
    return {contentWidth() + paddings, heightOf(m_size)};
}

bool PushButton::event(QEvent* event)
{
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave ||
        event->type() == QEvent::EnabledChange)
        m_hover->moveTo(isEnabled() && event->type() == QEvent::HoverEnter ? 1 : 0);
    return QPushButton::event(event);
}

void PushButton::paintEvent(QPaintEvent*)
{
    Drawing::Painter painter(*this);
    paintGround(painter);
    paintContent(painter);
}

void PushButton::paintGround(QPainter& painter) const
{
    const QRectF ground = rect();
    if (isAccented()) {
        Drawing::fill(painter, ground, radius, m_theme[ColorRole::accentFill]);
        // The overlay goes away from the text's colour, so that the text never becomes harder to
        // read.
        const bool isDarkText = m_theme[ColorRole::onAccent].lightness() < 128;
        const QColor overlay = isDarkText ? Qt::white : Qt::black;
        const qreal opacity =
            std::max(accentHover * m_hover->value(), accentPressed * m_press->value());
        Drawing::fill(painter, ground, radius, Drawing::faded(overlay, opacity));
        if (hasFocus()) // the ring alone, in nearly the same colour, is easily missed
            Drawing::edge(painter, ground.adjusted(1, 1, -1, -1), radius - 1,
                          QPen(Drawing::faded(m_theme[ColorRole::onAccent], 0.8), 1));
        return;
    }
    Drawing::fill(painter, ground, radius, m_theme[ColorRole::button]);
    Drawing::fill(painter, ground, radius,
                  Drawing::faded(m_theme[ColorRole::hover], m_hover->value()));
    Drawing::fill(painter, ground, radius,
                  Drawing::faded(m_theme[ColorRole::pressed], m_press->value()));
    Drawing::edge(painter, ground, radius, QPen(m_theme[ColorRole::separator], 1));
}

void PushButton::paintContent(QPainter& painter) const
{
    const QColor color = m_theme[isAccented() ? ColorRole::onAccent : ColorRole::label];
    QRect place = rect();
    place.setLeft(place.left() + (place.width() - contentWidth()) / 2);
    place.setWidth(contentWidth());
    if (m_symbol) {
        const int size = symbolSizeOf(m_size);
        const QPoint corner(place.left(), (height() - size) / 2);
        Icon::paint(painter,
                    QStyle::visualRect(layoutDirection(), place, QRect(corner, QSize(size, size)))
                        .topLeft(),
                    *m_symbol, size, color);
        place.setLeft(place.left() + size + symbolGap);
    }
    painter.setPen(color);
    painter.drawText(place, Qt::AlignCenter | Qt::TextHideMnemonic, text());
}

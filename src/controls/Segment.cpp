#include "Segment.h"

#include "Drawing.h"
#include "Fade.h"
#include "Icon.h"

#include <QEvent>
#include <QStyle>

static constexpr int segmentHeight = 24;
static constexpr int padding = 8;
static constexpr int symbolSize = 16;
static constexpr int symbolGap = 5;
static constexpr int inset = 2;
static constexpr int radius = 4;

Segment::Segment(const Theme& theme, const QString& text, std::optional<Symbol> symbol,
                 QWidget* parent)
    : Themed(theme, text, parent), m_symbol(symbol), m_hover(new Fade(theme, *this))
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setTextStyle(TextStyle::callout);
}

int Segment::contentWidth() const
{
    return (m_symbol ? symbolSize + symbolGap : 0) + fontMetrics().horizontalAdvance(text());
}

QSize Segment::sizeHint() const
{
    return {contentWidth() + 2 * padding, segmentHeight};
}

bool Segment::event(QEvent* event)
{
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave)
        m_hover->moveTo(event->type() == QEvent::HoverEnter ? 1 : 0);
    return QRadioButton::event(event);
}

void Segment::paintEvent(QPaintEvent*)
{
    Drawing::Painter painter(*this);
    if (!isChecked())
        Drawing::fill(painter, rect().adjusted(inset, inset, -inset, -inset), radius,
                      isDown() ? m_theme[ColorRole::pressed]
                               : Drawing::faded(m_theme[ColorRole::hover], m_hover->value()));
    QRect place = rect();
    place.setLeft((width() - contentWidth()) / 2);
    place.setWidth(contentWidth());
    if (m_symbol) {
        const QRect symbol(place.left(), (segmentHeight - symbolSize) / 2, symbolSize, symbolSize);
        const QPoint corner = QStyle::visualRect(layoutDirection(), place, symbol).topLeft();
        const bool isAccented = isChecked() && isEnabled();
        Icon::paint(painter, corner, *m_symbol, symbolSize,
                    m_theme[isAccented ? ColorRole::accent : ColorRole::label]);
    }
    painter.setPen(m_theme[ColorRole::label]);
    const Qt::Alignment end = layoutDirection() == Qt::RightToLeft ? Qt::AlignLeft : Qt::AlignRight;
    painter.drawText(
        place, static_cast<int>(Qt::AlignVCenter | Qt::AlignAbsolute | end) | Qt::TextHideMnemonic,
        text());
}

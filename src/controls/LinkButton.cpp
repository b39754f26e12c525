#include "LinkButton.h"

#include "Drawing.h"
#include "FocusRing.h"

static constexpr int radius = 4;

LinkButton::LinkButton(const Theme& theme, const QString& text, QWidget* parent)
    : Themed(theme, text, parent)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setAutoDefault(false);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    FocusRing::outline(*this, *this, radius);
    setTextStyle(TextStyle::caption);
}

QSize LinkButton::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(text()) + 2 * padding, fontMetrics().height() + 2};
}

void LinkButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(Drawing::disabledOpacity);
    QFont font = this->font();
    font.setUnderline(isEnabled() && underMouse());
    painter.setFont(font);
    painter.setPen(m_theme[isDown() ? ColorRole::label : ColorRole::accentText]);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

#include "LinkButton.h"

#include "Drawing.h"
#include "FocusRing.h"
#include "Theme.h"

static constexpr int radius = 4;

LinkButton::LinkButton(const Theme& theme, const QString& text, QWidget* parent)
    : QPushButton(text, parent), m_theme(theme)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setAutoDefault(false);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    FocusRing::outline(*this, *this, radius);
    follow();
    connect(&theme, &Theme::changed, this, &LinkButton::follow);
}

void LinkButton::follow()
{
    setFont(m_theme.font(TextStyle::caption));
    update();
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

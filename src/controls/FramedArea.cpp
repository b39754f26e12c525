#include "FramedArea.h"

#include "Drawing.h"

FramedArea::FramedArea(const Theme& theme, QWidget* parent) : Themed(theme, parent) {}

void FramedArea::paintEvent(QPaintEvent*)
{
    Drawing::Painter painter(*this);
    Drawing::fill(painter, rect(), radius, m_theme[ColorRole::textBackground]);
    Drawing::edge(painter, rect(), radius, QPen(m_theme[ColorRole::outline], 1));
}

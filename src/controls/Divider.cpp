#include "Divider.h"

#include <QPainter>

Divider::Divider(const Theme& theme, QWidget* parent) : Themed(theme, parent)
{
    setFixedHeight(1);
}

void Divider::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), m_theme[ColorRole::separator]);
}

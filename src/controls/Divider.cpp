#include "Divider.h"

#include "Theme.h"

#include <QPainter>

Divider::Divider(const Theme& theme, QWidget* parent) : QWidget(parent), m_theme(theme)
{
    setFixedHeight(1);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void Divider::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), m_theme[ColorRole::separator]);
}

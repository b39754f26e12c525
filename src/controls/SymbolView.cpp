#include "SymbolView.h"

#include "Icon.h"
#include "Theme.h"

#include <QPainter>

SymbolView::SymbolView(const Theme& theme, Symbol symbol, int size, ColorRole role, QWidget* parent)
    : QWidget(parent), m_theme(theme), m_symbol(symbol), m_role(role)
{
    setFixedSize(size, size);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void SymbolView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    Icon::paint(painter, QPointF(), m_symbol, width(), m_theme[m_role]);
}

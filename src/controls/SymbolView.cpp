#include "SymbolView.h"

#include "Icon.h"

#include <QPainter>

SymbolView::SymbolView(const Theme& theme, Symbol symbol, int size, ColorRole role, QWidget* parent)
    : Themed(theme, parent), m_symbol(symbol), m_role(role)
{
    setFixedSize(size, size);
}

void SymbolView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    Icon::paint(painter, QPointF(), m_symbol, width(), m_theme[m_role]);
}

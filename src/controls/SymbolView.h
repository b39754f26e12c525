#pragma once

#include "Symbol.h"
#include "Themed.h"

#include <QWidget>

/// An icon for decoration only; screen readers ignore it. Main thread.
class SymbolView : public Themed<QWidget>
{
    Q_OBJECT

public:
    /// `size` is in logical pixels.
    SymbolView(const Theme& theme, Symbol symbol, int size, ColorRole role,
               QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
    ColorRole m_role;
};

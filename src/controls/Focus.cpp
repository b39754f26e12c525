#include "Focus.h"

#include <QWidget>

bool Focus::isIn(const QWidget& widget)
{
    const QWidget* const focused = widget.window()->focusWidget();
    return focused != nullptr && (focused == &widget || widget.isAncestorOf(focused));
}

bool Focus::isLost(const QWidget& widget)
{
    const QWidget* const focused = widget.window()->focusWidget();
    return focused == nullptr || focused->focusPolicy() == Qt::NoFocus || !focused->isEnabled() ||
           !focused->isVisibleTo(widget.window());
}

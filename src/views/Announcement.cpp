#include "Announcement.h"

#include <QAccessible>
#include <QWidget>

void Announcement::tell(QWidget& widget, const QString& text)
{
    widget.setAccessibleName(text);
    QAccessibleEvent event(&widget, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

#include "AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

static constexpr const char* roleProperty = "pithwiseAccessibleRole";

static QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object)
{
    const QVariant role = object->property(roleProperty);
    auto* const widget = qobject_cast<QWidget*>(object);
    if (!widget || !role.isValid())
        return nullptr;
    return new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()));
}

void AccessibleRole::set(QWidget& widget, QAccessible::Role role)
{
    QAccessible::installFactory(makeInterface); // Qt installs a factory only once
    widget.setProperty(roleProperty, static_cast<int>(role));
}

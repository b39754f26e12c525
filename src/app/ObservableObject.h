#pragma once

#include <QObject>

/// What owns Published fields.
class ObservableObject : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    /// A field is about to be set, perhaps to what it is already; it still holds what it held.
    void willChange();
};

#pragma once

#include <QObject>

/// Base class of objects that own Published fields.
class ObservableObject : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    /// A field is about to be set, perhaps to the value that it has already. It still has the old
    /// value.
    void willChange();
};

#pragma once

#include <QCoreApplication>

/// What an application object of Qt is made with, which it refers to as long as it lives.
struct QtArguments
{
    QtArguments() = default;
    QtArguments(const QtArguments&) = delete;
    QtArguments& operator=(const QtArguments&) = delete;

    int count = 1;
    char name[9] = "pithwise";
    char* values[2] = {name, nullptr};
};

/// Ends the event loop, which may not have begun yet. Any thread, while there is an application
/// object.
inline void quitSoon()
{
    QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                              Qt::QueuedConnection);
}

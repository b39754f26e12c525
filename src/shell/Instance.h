#pragma once

#include <QObject>

#include <optional>

/// The application among all processes of the session, on the session bus. Main thread.
class Instance : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "local.pithwise.Pithwise")

public:
    enum class Request { toggle, show, hotkey };
    enum class Answer {
        done,
        nobody, // there is no such process, or no bus
        silent  // there is one, which does not answer within two seconds
    };

    /// Asks the process that is the instance. Needs an application object.
    static Answer ask(Request request);

    /// Makes this process the instance; also where there is no bus, and so nobody to know of it.
    /// False where another one is.
    bool claim();

public slots:
    // What others may ask for, under the names that the bus knows.
    Q_SCRIPTABLE void Toggle() { emit requested(Request::toggle); }
    Q_SCRIPTABLE void Show() { emit requested(Request::show); }
    Q_SCRIPTABLE void Hotkey() { emit requested(Request::hotkey); }

signals:
    void requested(Instance::Request request);
};

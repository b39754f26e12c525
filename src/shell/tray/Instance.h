#pragma once

#include <QObject>

#include <optional>

/// Which process of the session is the application, as known on the session bus. Main thread.
class Instance : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "local.pithwise.Pithwise")

public:
    enum class Request { toggle, hotkey };
    enum class Answer {
        done,
        nobody, // no process is the application, or there is no bus
        silent  // there is one, but it does not answer
    };

    /// Asks the process that is the application to do something. Needs a QCoreApplication.
    static Answer ask(Request request);

    /// Makes this process the application. Returns false if another one is. Without a bus it
    /// returns true, but no other process can know about this one.
    bool claim();

public slots:
    // What other processes may ask for; the bus has these names.
    Q_SCRIPTABLE void Toggle() { emit toggleRequested(); }
    Q_SCRIPTABLE void Show() { emit showRequested(); }
    Q_SCRIPTABLE void Hotkey() { emit hotkeyRequested(); }

signals:
    void toggleRequested();
    void showRequested();
    void hotkeyRequested();
};

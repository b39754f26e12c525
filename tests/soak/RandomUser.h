#pragma once

#include "DesktopSession.h"
#include "LoopbackServer.h"
#include "ScreenReader.h"
#include "SoakedApplication.h"

#include <QString>
#include <QStringList>

#include <random>
#include <vector>

/// Does at random what people do with the application, on a desktop with a foreign editor, a window
/// to drag a file from, and a panel. Throws std::runtime_error where the application is gone or
/// does not answer.
class RandomUser
{
public:
    /// The place of the application's icon on the screen.
    static constexpr int iconX = 1210;
    static constexpr int iconY = 10;

    /// All outlive this. The same `seed` makes the same choices. The application
    /// may start later.
    RandomUser(DesktopSession& session, ScreenReader& reader, LoopbackServer& server,
               SoakedApplication& application, unsigned int seed);

    /// One action.
    void act();
    /// Now and then the application is ended instead, in whatever way, and started again.
    void actOrEnd();
    /// Each action, a few times.
    void actAll();

    /// Returns once nothing is under way, with the popover and the summary of a sentence shown: the
    /// model is loaded, as it is from the first summary on.
    void rest();

    /// How many files were let fall where they are taken.
    int drops() const { return m_drops; }

private:
    using Action = void (RandomUser::*)();

    void startSource();
    void perform(Action action);
    void end();
    int random(int count);
    const QString& randomOf(const QStringList& choices);
    bool isShown();
    bool isEnabled(const char* button);
    void show();
    void press(const char* button);
    void choose(const char* button);
    bool focus(const char* name);
    void key(const QString& name);
    void type(const QString& text);
    void moveTo(const QPoint& point);
    void click(const QPoint& point);
    bool comesTo(const std::function<bool()>& condition);

    void toggle();
    void clickIcon();
    void clickOutside();
    void escape();
    void wander();
    void write();
    void useClipboard();
    void clear();
    void summarize();
    void stop();
    void copy();
    void note();
    void replace();
    void changeMode();
    void changeLength();
    void fetch();
    void load();
    void drop();
    void captureWindow();
    void captureScreen();
    void cancelCapture();
    void hotkey();

    static const std::vector<Action> actions;

    DesktopSession& m_session;
    ScreenReader& m_reader;
    LoopbackServer& m_server;
    SoakedApplication& m_application;
    QProcess* m_source = nullptr; // what files are dragged from
    int m_drops = 0;
    std::mt19937 m_random;
    QStringList m_files;
};

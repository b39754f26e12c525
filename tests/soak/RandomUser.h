#pragma once

#include "DesktopSession.h"
#include "LoopbackServer.h"
#include "ScreenReader.h"

#include <QString>
#include <QStringList>

#include <random>
#include <vector>

/// Does at random what people do with the application, on a desktop with a foreign editor and a
/// panel. Throws std::runtime_error where the application is gone or does not answer.
class RandomUser
{
public:
    /// The place of the application's icon on the screen.
    static constexpr int iconX = 1210;
    static constexpr int iconY = 10;

    /// All outlive this. The same `seed` makes the same choices.
    RandomUser(DesktopSession& session, ScreenReader& reader, LoopbackServer& server,
               unsigned int seed);

    /// One action.
    void act();
    /// Each action, a few times.
    void actAll();

    /// Returns once nothing is under way, with the popover and the summary of a sentence shown: the
    /// model is loaded, as it is from the first summary on.
    void rest();

private:
    using Action = void (RandomUser::*)();

    void perform(Action action);
    void requireAnswer();
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
    void click(int x, int y);
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
    void captureWindow();
    void captureScreen();
    void cancelCapture();
    void hotkey();

    static const std::vector<Action> actions;

    DesktopSession& m_session;
    ScreenReader& m_reader;
    LoopbackServer& m_server;
    std::mt19937 m_random;
    QStringList m_files;
};

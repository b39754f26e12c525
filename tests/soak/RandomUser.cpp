#include "RandomUser.h"

#include "Program.h"
#include "TextImage.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QImage>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <stdexcept>

const std::vector<RandomUser::Action> RandomUser::actions = {
    &RandomUser::toggle,        &RandomUser::clickIcon,     &RandomUser::clickOutside,
    &RandomUser::escape,        &RandomUser::wander,        &RandomUser::write,
    &RandomUser::useClipboard,  &RandomUser::clear,         &RandomUser::summarize,
    &RandomUser::stop,          &RandomUser::copy,          &RandomUser::note,
    &RandomUser::replace,       &RandomUser::changeMode,    &RandomUser::changeLength,
    &RandomUser::fetch,         &RandomUser::load,          &RandomUser::captureWindow,
    &RandomUser::captureScreen, &RandomUser::cancelCapture, &RandomUser::hotkey,
    &RandomUser::drop,
};

/// Left of the popover.
static constexpr QPoint sourcePlace(40, 160);

static QString written(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("A file cannot be written.");
    return path;
}

RandomUser::RandomUser(DesktopSession& session, ScreenReader& reader, LoopbackServer& server,
                       SoakedApplication& application, unsigned int seed)
    : m_session(session),
      m_reader(reader),
      m_server(server),
      m_application(application),
      m_random(seed)
{
    const QByteArray sentence = "The meeting decided on the budget of the project. ";
    LoopbackServer::Answer page;
    page.headers = {{"Content-Type", "text/html"}};
    page.body = "<article><p>" + sentence.repeated(10) + "</p></article>";
    m_server.setAnswer("/page", page);
    m_files = {written(m_session.path("short.txt"), sentence),
               written(m_session.path("long.txt"), sentence.repeated(2'000)),
               written(m_session.path("broken.pdf"), "%PDF-1.7 " + sentence),
               m_session.path("picture.png"), m_session.path("missing.txt")};
    if (!TextImage::render({QString::fromUtf8(sentence)}).save(m_files[3]))
        throw std::runtime_error("A picture cannot be written.");
    startSource();
}

/// Starts a program with a window whose files can be dragged to the application.
void RandomUser::startSource()
{
    m_source = &m_session.start(PITHWISE_DESKTOP_APP,
                                {"--title", "Source", "--drags", m_files[random(4)]});
    const QString window = QString::number(m_session.waitForWindow({"--name", "^Source$"}));
    m_session.xdotool({"windowmove", "--sync", window, QString::number(sourcePlace.x()),
                       QString::number(sourcePlace.y())});
}

void RandomUser::act()
{
    perform(actions[static_cast<std::size_t>(random(static_cast<int>(actions.size())))]);
}

void RandomUser::actOrEnd()
{
    constexpr int actionsAnEnd = 12;
    if (random(actionsAnEnd) == 0)
        end();
    else
        act();
}

void RandomUser::actAll()
{
    constexpr int rounds = 3;
    for (int round = 0; round < rounds; ++round) {
        for (const Action action : actions)
            perform(action);
    }
}

void RandomUser::perform(Action action)
{
    try {
        (this->*action)();
    } catch (const std::runtime_error&) {
        // What was to be used may have gone at that moment. Whether all is well is asked next.
    }
    QCoreApplication::processEvents(); // what the reader is told
    m_reader.forgetEvents();
    m_application.requireAnswer();
}

/// By the button, by a signal that asks, or by one that does not, right after something was begun.
void RandomUser::end()
{
    act();
    constexpr int ways = 3;
    const int way = random(ways);
    if (way == 0) {
        press("Quit");
        comesTo([this] { return m_application.hasEnded(); });
    }
    m_application.end(way == 1 ? SIGKILL : SIGTERM);
    m_application.start();
}

void RandomUser::rest()
{
    key("Escape");
    show();
    m_session.waitUntil("the application to rest", [this] {
        return m_reader.lookFor("push button", "Summarize").has_value();
    });
    clear();
    write();
    m_session.waitUntil("a text to summarize", [this] { return isEnabled("Summarize"); });
    summarize();
    m_session.waitUntil("the summary", [this] { return isEnabled("Copy Markdown"); });
}

int RandomUser::random(int count)
{
    return std::uniform_int_distribution(0, count - 1)(m_random);
}

const QString& RandomUser::randomOf(const QStringList& choices)
{
    return choices[random(static_cast<int>(choices.size()))];
}

bool RandomUser::comesTo(const std::function<bool()>& condition)
{
    const QDeadlineTimer deadline(5'000);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(5);
    }
    return true;
}

bool RandomUser::isShown()
{
    return m_reader.lookFor("push button", "Quit").has_value();
}

bool RandomUser::isEnabled(const char* button)
{
    const auto node = m_reader.lookFor("push button", button);
    return node && node->is(ScreenReader::enabled);
}

void RandomUser::show()
{
    if (!isShown())
        toggle();
    comesTo([this] { return isShown(); });
}

void RandomUser::press(const char* button)
{
    show();
    const auto node = m_reader.lookFor("push button", button);
    if (node && node->is(ScreenReader::enabled))
        m_reader.perform(*node, "Press");
}

void RandomUser::choose(const char* button)
{
    show();
    if (const auto node = m_reader.lookFor("radio button", button))
        m_reader.perform(*node, "Toggle");
}

bool RandomUser::focus(const char* name)
{
    return comesTo([&] {
        for (const ScreenReader::Node& node : m_reader.nodes()) {
            if (node.name != name || !node.is(ScreenReader::focusable))
                continue;
            if (node.is(ScreenReader::focused))
                return true;
            m_reader.perform(node, "SetFocus");
        }
        return false;
    });
}

void RandomUser::key(const QString& name)
{
    m_session.xdotool({"key", name});
}

void RandomUser::type(const QString& text)
{
    m_session.xdotool({"type", "--delay", "1", text});
}

void RandomUser::moveTo(const QPoint& point)
{
    m_session.xdotool({"mousemove", QString::number(point.x()), QString::number(point.y())});
}

void RandomUser::click(const QPoint& point)
{
    moveTo(point);
    m_session.xdotool({"click", "1"});
}

void RandomUser::toggle()
{
    m_session.run(Program::path(), {"toggle"});
}

void RandomUser::clickIcon()
{
    click({iconX, iconY});
}

void RandomUser::clickOutside()
{
    click({20 + random(200), 700 + random(150)});
}

void RandomUser::escape()
{
    key("Escape");
}

/// Keys that press nothing: a button that has the focus may be the one that quits.
void RandomUser::wander()
{
    show();
    for (int i = random(12); i >= 0; --i)
        key(randomOf({"Tab", "shift+Tab", "Left", "Right", "Home", "End", "Prior", "Next"}));
}

void RandomUser::write()
{
    choose("Clipboard");
    if (focus("Text to summarize"))
        type(QStringLiteral("Some words that a person types. ").repeated(1 + random(5)));
}

void RandomUser::useClipboard()
{
    choose("Clipboard");
    press("Use Clipboard");
}

void RandomUser::clear()
{
    choose("Clipboard");
    press("Clear");
}

void RandomUser::summarize()
{
    press("Summarize");
}

void RandomUser::stop()
{
    press("Stop");
}

void RandomUser::copy()
{
    press("Copy Markdown");
}

void RandomUser::note()
{
    press("Daily Note");
}

void RandomUser::replace()
{
    press("Replace Clipboard");
}

void RandomUser::changeMode()
{
    constexpr std::array modes = {"3 Bullets", "Executive", "TL;DR", "Actions"};
    choose(modes.at(static_cast<std::size_t>(random(modes.size()))));
}

void RandomUser::changeLength()
{
    show();
    if (focus("Length"))
        key(randomOf({"Left", "Right", "Home", "End"}));
}

void RandomUser::fetch()
{
    choose("Web");
    if (!focus("Web address"))
        return;
    key("ctrl+a");
    type(m_server.url(random(2) == 0 ? "/page" : "/missing").toString());
    key("Return");
}

void RandomUser::load()
{
    choose("Document");
    press("Choose File…");
    if (focus("File name:")) {
        key("ctrl+a");
        type(randomOf(m_files));
        key("Return");
    }
    // The chooser stays where there is no such file, with a message over it.
    comesTo([this] {
        if (!m_reader.lookFor("text", "File name:"))
            return true;
        key("Escape");
        return false;
    });
}

/// With the mouse alone. Whoever drags asks about one place at a time, so the hand does not stand
/// still until the file is welcome.
void RandomUser::drop()
{
    choose("Document");
    const auto zone = m_reader.lookFor("label", "Drop a PDF, TXT, DOCX, RTF or image here");
    if (!zone)
        return;
    m_source->readAllStandardOutput();
    const QPoint start = sourcePlace + QPoint(100, 100);
    moveTo(start);
    m_session.xdotool({"mousedown", "1"});
    moveTo(start + QPoint(20, 0));
    moveTo(start + QPoint(30, 10));
    QByteArray told;
    int step = 0;
    const bool isWelcome = comesTo([&] {
        moveTo(zone->area.center() + QPoint(++step % 2, 0));
        m_source->waitForReadyRead(10);
        told += m_source->readAllStandardOutput();
        return told.contains("over copy");
    });
    m_session.xdotool({"mouseup", "1"});
    m_drops += isWelcome ? 1 : 0;
}

void RandomUser::captureWindow()
{
    choose("Capture");
    press("Active Window");
}

void RandomUser::captureScreen()
{
    choose("Capture");
    press("Full Screen");
}

void RandomUser::cancelCapture()
{
    choose("Capture");
    press("Select Area");
    comesTo([this] {
        key("Escape");
        return isShown();
    });
}

void RandomUser::hotkey()
{
    key("ctrl+alt+s");
}

#include "ReaderFixture.h"

#include <algorithm>
#include <exception>
#include <iostream>

ReaderFixture::ReaderFixture() = default;

ReaderFixture::ReaderFixture(const DesktopSession::Options& options) : ApplicationFixture(options)
{}

ReaderFixture::~ReaderFixture() = default;

void ReaderFixture::TearDown()
{
    if (HasFailure())
        describe();
    ApplicationFixture::TearDown();
}

QProcess& ReaderFixture::launchToReadOn(const QString& model, const QStringList& variables)
{
    QProcess& process = launchOn(model, variables + QStringList(tellsAll));
    m_reader.follow(process.processId());
    return process;
}

void ReaderFixture::toggle()
{
    EXPECT_EQ(run({"toggle"}), 0) << m_error;
}

void ReaderFixture::show()
{
    toggle();
    waitUntilShown();
    waitUntilInFront(popover());
    m_session.waitUntil("a control with the focus",
                        [this] { return m_reader.focus().has_value(); });
}

void ReaderFixture::press(const QStringList& keys)
{
    for (const QString& key : keys)
        m_session.xdotool({"key", key});
}

void ReaderFixture::type(const QString& text)
{
    m_session.xdotool({"type", "--delay", "1", text});
}

void ReaderFixture::choose(const std::string& name)
{
    m_reader.perform(m_reader.find("radio button", name), "Toggle");
    m_session.waitUntil(("the choice of " + name).c_str(), [&] {
        return m_reader.find("radio button", name).is(ScreenReader::focusable);
    });
}

void ReaderFixture::waitUntilEnabled(const std::string& button)
{
    m_session.waitUntil(("the button " + button).c_str(), [&] {
        return m_reader.find("push button", button).is(ScreenReader::enabled);
    });
}

void ReaderFixture::pressButton(const std::string& name)
{
    waitUntilEnabled(name);
    m_reader.perform(m_reader.find("push button", name), "Press");
}

bool ReaderFixture::isTold(const std::string& text)
{
    QCoreApplication::processEvents();
    const auto& events = m_reader.events();
    return std::any_of(events.begin(), events.end(), [&](const ScreenReader::Event& event) {
        return event.kind == "StateChanged showing" && event.value == 1 &&
               event.source.role == "notification" && event.source.name == text;
    });
}

void ReaderFixture::waitUntilTold(const std::string& text)
{
    m_session.waitUntil(("\"" + text + "\" to be told").c_str(), [&] { return isTold(text); });
}

void ReaderFixture::waitUntilFocused(const std::string& role, const std::string& name)
{
    m_session.waitUntil(("the focus on " + name).c_str(), [&] {
        const auto node = m_reader.focus();
        return node && node->role == role && node->name == name;
    });
}

void ReaderFixture::waitForSummary()
{
    const ScreenReader::Node summary = m_reader.find("label", "Summary");
    m_session.waitUntil("the summary", [&] { return m_reader.text(summary) == "• The takeaway."; });
}

std::string ReaderFixture::source()
{
    choose("Clipboard");
    return m_reader.text(m_reader.find("text", "Text to summarize"));
}

void ReaderFixture::enter(const QString& text)
{
    waitUntilFocused("text", "Text to summarize");
    type(text);
    m_session.waitUntil("the text", [&] { return source() == text.toStdString(); });
}

std::string ReaderFixture::summary()
{
    return m_reader.text(m_reader.find("label", "Summary"));
}

void ReaderFixture::describe()
{
    try {
        for (const ScreenReader::Node& node : m_reader.nodes()) {
            std::cerr << node.role << ": " << node.name
                      << (node.is(ScreenReader::enabled) ? "" : " (disabled)")
                      << (node.is(ScreenReader::checked) ? " (checked)" : "")
                      << (node.is(ScreenReader::focused) ? " (focused)" : "") << '\n';
        }
    } catch (const std::exception& error) {
        std::cerr << "Nothing can be read of the application: " << error.what() << '\n';
    }
}

#pragma once

#include "ApplicationFixture.h"
#include "ScreenReader.h"

#include <algorithm>
#include <exception>

/// The tray application, used with the keyboard and looked at through the eyes of a screen reader.
/// Of a test that fails it prints what they saw.
class ReaderFixture : public ApplicationFixture
{
protected:
    void TearDown() override
    {
        if (HasFailure())
            describe();
        ApplicationFixture::TearDown();
    }

    /// Starts the application and returns when it tells what it shows.
    QProcess& launchToRead() { return launchToReadOn(standin()); }

    QProcess& launchToReadOn(const QString& model, const QStringList& variables = {})
    {
        QProcess& process = launchOn(model, variables + QStringList(tellsAll));
        m_reader.follow(process.processId());
        return process;
    }

    void toggle() { EXPECT_EQ(run({"toggle"}), 0) << m_error; }

    /// Opens the popover and returns when it has the keyboard.
    void show()
    {
        toggle();
        waitUntilShown();
        waitUntilInFront(popover());
        m_session.waitUntil("a control with the focus",
                            [this] { return m_reader.focus().has_value(); });
    }

    void press(const QStringList& keys)
    {
        for (const QString& key : keys)
            m_session.xdotool({"key", key});
    }

    void type(const QString& text) { m_session.xdotool({"type", "--delay", "1", text}); }

    /// Opens one of the tabs or chooses a kind of summary.
    void choose(const std::string& name)
    {
        m_reader.perform(m_reader.find("radio button", name), "Toggle");
        m_session.waitUntil(("the choice of " + name).c_str(), [&] {
            return m_reader.find("radio button", name).is(ScreenReader::focusable);
        });
    }

    void waitUntilEnabled(const std::string& button)
    {
        m_session.waitUntil(("the button " + button).c_str(), [&] {
            return m_reader.find("push button", button).is(ScreenReader::enabled);
        });
    }

    /// Once it can be pressed.
    void pressButton(const std::string& name)
    {
        waitUntilEnabled(name);
        m_reader.perform(m_reader.find("push button", name), "Press");
    }

    /// Whether readers have been given reason to read `text` out.
    bool isTold(const std::string& text)
    {
        QCoreApplication::processEvents();
        const auto& events = m_reader.events();
        return std::any_of(events.begin(), events.end(), [&](const ScreenReader::Event& event) {
            return event.kind == "StateChanged showing" && event.value == 1 &&
                   event.source.role == "notification" && event.source.name == text;
        });
    }

    void waitUntilTold(const std::string& text)
    {
        m_session.waitUntil(("\"" + text + "\" to be told").c_str(), [&] { return isTold(text); });
    }

    void waitUntilFocused(const std::string& role, const std::string& name)
    {
        m_session.waitUntil(("the focus on " + name).c_str(), [&] {
            const auto node = m_reader.focus();
            return node && node->role == role && node->name == name;
        });
    }

    /// Until the popover shows what the model writes.
    void waitForSummary()
    {
        const ScreenReader::Node summary = m_reader.find("label", "Summary");
        m_session.waitUntil("the summary",
                            [&] { return m_reader.text(summary) == "• The takeaway."; });
    }

    /// The text in the editor of the first tab, which is what is summarised.
    std::string source()
    {
        choose("Clipboard");
        return m_reader.text(m_reader.find("text", "Text to summarize"));
    }

    /// Types a text into the editor, which has the focus, and returns when it is all there.
    void enter(const QString& text)
    {
        waitUntilFocused("text", "Text to summarize");
        type(text);
        m_session.waitUntil("the text", [&] { return source() == text.toStdString(); });
    }

    /// The summary as it is shown.
    std::string summary() { return m_reader.text(m_reader.find("label", "Summary")); }

    // Qt applications tell nothing otherwise where the desktop has no screen reader running.
    static constexpr const char* tellsAll = "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1";

    ScreenReader m_reader{m_session};

private:
    void describe()
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
};

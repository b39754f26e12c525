#pragma once

#include "ApplicationFixture.h"
#include "ScreenReader.h"

/// The tray application, used with the keyboard and looked at through the eyes of a screen reader.
class ReaderFixture : public ApplicationFixture
{
protected:
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

    // Qt applications tell nothing otherwise where the desktop has no screen reader running.
    static constexpr const char* tellsAll = "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1";

    ScreenReader m_reader{m_session};
};

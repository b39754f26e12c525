#pragma once

#include "ApplicationFixture.h"
#include "ScreenReader.h"

/// The tray application, used with the keyboard and looked at through the eyes of a screen reader.
/// Of a test that fails it prints what they saw.
class ReaderFixture : public ApplicationFixture
{
public:
    ~ReaderFixture() override;

protected:
    ReaderFixture();
    explicit ReaderFixture(const DesktopSession::Options& options);
    void TearDown() override;

    /// Starts the application and returns when it tells what it shows.
    QProcess& launchToRead() { return launchToReadOn(standin()); }

    QProcess& launchToReadOn(const QString& model, const QStringList& variables = {});

    void toggle();

    /// Opens the popover and returns when it has the keyboard.
    void show();

    void press(const QStringList& keys);

    void type(const QString& text);

    /// Opens one of the tabs or chooses a kind of summary.
    void choose(const std::string& name);

    void waitUntilEnabled(const std::string& button);

    /// Once it can be pressed.
    void pressButton(const std::string& name);

    /// Whether readers have been given reason to read `text` out.
    bool isTold(const std::string& text);

    void waitUntilTold(const std::string& text);

    void waitUntilFocused(const std::string& role, const std::string& name);

    /// Until the popover shows what the model writes.
    void waitForSummary();

    /// The text in the editor of the first tab, which is what is summarised.
    std::string source();

    /// Types a text into the editor, which has the focus, and returns when it is all there.
    void enter(const QString& text);

    /// The summary as it is shown.
    std::string summary();

    // Qt applications tell nothing otherwise where the desktop has no screen reader running.
    static constexpr const char* tellsAll = "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1";

    ScreenReader m_reader{m_session};

private:
    void describe();
};

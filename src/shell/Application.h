#pragma once

#include "AppDelegate.h"
#include "AppState.h"
#include "DesktopAppearance.h"
#include "Instance.h"
#include "ModelManager.h"
#include "Theme.h"

#include <filesystem>
#include <memory>

class LastingPasteboard;
class MainThreadQueue;

/// Everything that lives as long as the tray application. Main thread.
class Application
{
public:
    /// `model` is the file to use instead of the downloaded one; empty for that.
    explicit Application(const std::filesystem::path& model);
    /// What the application has put on the clipboard stays there.
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Sets it up; what `instance` is asked for from now on is done.
    void launch(Instance& instance);

private:
    AppServices services(const std::filesystem::path& model);
    std::string captureText(ScreenGrab::Kind kind);
    std::unique_ptr<QWidget> makeContent();
    void handle(Instance::Request request);

    Theme m_theme;
    DesktopAppearance m_appearance{m_theme};
    ModelManager m_model;
    const std::shared_ptr<MainThreadQueue> m_queue;
    const std::shared_ptr<LastingPasteboard> m_pasteboard;
    const std::shared_ptr<LastingPasteboard> m_grabPasteboard; // another thread's
    AppState m_state;
    AppDelegate m_delegate;
};

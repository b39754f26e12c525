#pragma once

#include "AppDelegate.h"
#include "AppState.h"
#include "DesktopAppearance.h"
#include "ModelManager.h"
#include "Theme.h"

#include <filesystem>
#include <memory>

class Instance;
class LastingPasteboard;
class MainThreadQueue;

/// Everything that lives as long as the tray application. Main thread.
class Application
{
public:
    /// `model` is the model's file; if empty, the downloaded one is used.
    explicit Application(const std::filesystem::path& model);
    /// Sees to it that what the application has put on the clipboard stays there.
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Sets the application up. From now on it does what `instance` is asked for.
    void launch(Instance& instance);

private:
    AppServices services(const std::filesystem::path& model);
    std::string captureText(ScreenGrab::Kind kind);
    std::unique_ptr<QWidget> makeContent();

    Theme m_theme;
    DesktopAppearance m_appearance{m_theme};
    ModelManager m_model;
    const std::shared_ptr<MainThreadQueue> m_queue;
    const std::shared_ptr<LastingPasteboard> m_pasteboard;
    const std::shared_ptr<LastingPasteboard> m_grabPasteboard; // used by another thread
    AppState m_state;
    AppDelegate m_delegate;
};

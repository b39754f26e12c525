#pragma once

#include "OutsideClicks.h"
#include "Popover.h"
#include "TrayIcon.h"

#include <QCoroTask>
#include <QElapsedTimer>
#include <QPoint>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

class AppState;
class ModelManager;
class Theme;

/// Holds the application together: the tray icon, the popover, the clicks that close it and the
/// hotkey. Main thread only.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    /// Makes the content of the popover, once.
    using MakeContent = std::function<std::unique_ptr<QWidget>()>;

    /// All outlive this.
    AppDelegate(AppState& state, ModelManager& model, const Theme& theme, MakeContent makeContent);
    ~AppDelegate() override;

    /// Sets everything up, and has the language model downloaded where it is missing.
    void applicationDidFinishLaunching();

    /// Closes the popover where the user sees it, else shows it.
    void togglePopover();
    /// Shows the popover where it is not shown, on the workspace that the user looks at, and gives
    /// it the keyboard in any case.
    void showPopover();

    /// What the hotkey does: summarises what is in front, and then shows the popover.
    void handleHotkey();

    /// While a window of another process belongs to the popover, as a file chooser may, clicks
    /// close nothing. Then the popover has the keyboard again. Calls nest.
    void pauseOutsideClicks();
    void resumeOutsideClicks();

    /// Takes the popover out of the way of a capture, and brings it back where it was shown. Calls
    /// nest. Returns whether it has gone. It stays where only one `window` is captured that it
    /// does not cover.
    bool hideForCapture(std::optional<std::uint32_t> window = std::nullopt);
    void showAfterCapture();

private:
    void clickedIcon();
    void clickedOutside();
    bool isSeen() const;
    bool wasClosedByThisClick() const;
    QRect findPlace() const;
    void drawIcon() const;
    QCoro::Task<> runHotkey();

    AppState& m_state;
    ModelManager& m_model;
    const Theme& m_theme;
    const MakeContent m_makeContent;
    std::unique_ptr<TrayIcon> m_icon;
    std::unique_ptr<Popover> m_popover;
    std::unique_ptr<OutsideClicks> m_outsideClicks;
    std::optional<QPoint> m_lastClick; // on an icon of which nothing tells the place
    QElapsedTimer m_sinceClosed;       // by a click; invalid after the next one
    int m_pauses = 0;
    int m_captures = 0;
    bool m_isShownAfterCapture = false;
};

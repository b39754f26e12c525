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

/// Connects the parts of the application: the tray icon, the popover, the clicks that close it and
/// the hotkey. Main thread only.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    /// Makes the content of the popover. Called once.
    using MakeContent = std::function<std::unique_ptr<QWidget>()>;

    /// Requires: `state`, `model` and `theme` outlive this object.
    AppDelegate(AppState& state, ModelManager& model, const Theme& theme, MakeContent makeContent);
    ~AppDelegate() override;

    /// Sets everything up. Starts to download the language model if it is missing.
    void applicationDidFinishLaunching();

    /// Closes the popover if the user sees it, else shows it.
    void togglePopover();
    /// Shows the popover, if it is not shown yet, on the workspace that the user looks at. Gives it
    /// the keyboard in any case.
    void showPopover();

    /// What the hotkey does: summarises what is in front, and then shows the popover.
    QCoro::Task<> handleHotkey();

    /// Between these two calls, clicks close nothing: a window of another process belongs to the
    /// popover, as a file chooser may. Afterwards the popover has the keyboard again. Calls nest.
    void pauseOutsideClicks();
    void resumeOutsideClicks();

    /// hideForCapture() takes the popover out of the way of a capture and returns whether it had to
    /// go. If only one `window` is captured that the popover does not cover, it stays.
    /// showAfterCapture() brings it back if it had to go. Calls nest.
    bool hideForCapture(std::optional<std::uint32_t> window = std::nullopt);
    void showAfterCapture();

private:
    void clickedIcon();
    void clickedOutside();
    bool isSeen() const;
    bool wasClosedByThisClick() const;
    QRect findPlace() const;
    void drawIcon() const;

    AppState& m_state;
    ModelManager& m_model;
    const Theme& m_theme;
    const MakeContent m_makeContent;
    std::unique_ptr<TrayIcon> m_icon;
    std::unique_ptr<Popover> m_popover;
    std::unique_ptr<OutsideClicks> m_outsideClicks;
    std::optional<QPoint> m_lastClick; // on the icon, if its place is unknown
    QElapsedTimer m_sinceClosed;       // since a click closed it; invalid after the next click
    int m_pauses = 0;
    int m_captures = 0;
    bool m_isShownAfterCapture = false;
};

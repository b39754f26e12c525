#include "FrontApplication.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <string_view>
#include <vector>

namespace {

using Deadline = X11Connection::Deadline;

constexpr std::size_t maximumNameBytes = 1024;

// Terminals without "term" or "console" in their names; most have one of these.
constexpr std::array<std::string_view, 27> terminals = {
    "alacritty", "blackbox", "contour", "cool-retro", "foot",    "footclient",
    "ghostty",   "guake",    "hyper",   "kgx",        "kitty",   "konsole",
    "ptyxis",    "rio",      "rxvt",    "st",         "st-256",  "tabby",
    "tilda",     "tilix",    "urxvt",   "warp",       "wezterm", "xfce4-dropdown",
    "yakuake",   "zutty",    "tmux"};

/// The window that the window manager calls active. Without a window manager it is the window that
/// has the keyboard; with one, that window may be the manager's own.
xcb_window_t frontWindow(X11Connection& connection, Deadline deadline)
{
    if (connection.value(connection.root(), "_NET_SUPPORTING_WM_CHECK", deadline))
        return connection.value(connection.root(), "_NET_ACTIVE_WINDOW", deadline).value_or(0);
    const auto focus = connection.reply<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus(connection.get()), deadline);
    const bool isWindow =
        focus && focus->focus > XCB_INPUT_FOCUS_POINTER_ROOT && focus->focus != connection.root();
    return isWindow ? focus->focus : static_cast<xcb_window_t>(XCB_NONE);
}

void addName(std::vector<std::string>& names, std::string name)
{
    for (char& byte : name)
        byte = static_cast<char>(std::tolower(static_cast<unsigned char>(byte)));
    if (!name.empty())
        names.push_back(std::move(name));
}

} // namespace

std::optional<FrontApplication> FrontApplication::find(X11Connection& connection, Deadline deadline)
{
    FrontApplication result{frontWindow(connection, deadline), 0, {}};
    if (result.window == XCB_NONE)
        return std::nullopt;
    if (const auto windowClass =
            connection.property(result.window, XCB_ATOM_WM_CLASS, maximumNameBytes, deadline)) {
        const std::size_t end = windowClass->bytes.find('\0');
        addName(result.names, windowClass->bytes.substr(0, end));
        if (end != std::string::npos)
            addName(result.names, windowClass->bytes.substr(end + 1).c_str());
    }
    if (const auto process = connection.value(result.window, "_NET_WM_PID", deadline)) {
        result.process = static_cast<pid_t>(*process);
        std::ifstream file("/proc/" + std::to_string(*process) + "/comm");
        std::string name;
        std::getline(file, name);
        addName(result.names, std::move(name));
    }
    return result;
}

bool FrontApplication::isTerminal() const
{
    return std::any_of(names.begin(), names.end(), [](const std::string& name) {
        return name.find("term") != std::string::npos ||
               name.find("console") != std::string::npos ||
               std::any_of(terminals.begin(), terminals.end(), [&](std::string_view terminal) {
                   return name.starts_with(terminal) &&
                          (name.size() == terminal.size() ||
                           std::isalpha(static_cast<unsigned char>(name[terminal.size()])) == 0);
               });
    });
}

bool FrontApplication::ignoresShift() const
{
    return std::any_of(names.begin(), names.end(),
                       [](const std::string& name) { return name == "xterm" || name == "uxterm"; });
}

#pragma once

#include <QCoroTask>

#include <memory>
#include <optional>
#include <string>

class Accessibility;
class KeyEvents;
class Pasteboard;

/// The text the user has selected in whatever application is in front. Called on the main thread,
/// which is never blocked; one call at a time. Nothing is thrown: what cannot be had is absent.
/// Text is valid UTF-8, trimmed, and never empty.
namespace SelectionGrabber {

/// What the operations work with.
struct Ports
{
    std::shared_ptr<Accessibility> accessibility;
    std::shared_ptr<KeyEvents> keyEvents;
    std::shared_ptr<Pasteboard> pasteboard;
};

/// Those of the session the process runs in. Each call makes new ones; whatever a grab has put back
/// on the clipboard may be there only as long as they are.
Ports systemPorts();

/// The selected text, by axSelectedText, else by copySelection. Nothing at once where the process
/// may not read other applications. Less than 900 milliseconds.
QCoro::Task<std::optional<std::string>> grab(Ports ports);

/// The text selected in the focused element, as the application tells it.
QCoro::Task<std::optional<std::string>> axSelectedText(Ports ports);

/// The text that the application in front puts on the clipboard within 300 milliseconds of the
/// copy shortcut, sent in the user's name. Whatever was on the clipboard is put back afterwards.
QCoro::Task<std::optional<std::string>> copySelection(Ports ports);

} // namespace SelectionGrabber

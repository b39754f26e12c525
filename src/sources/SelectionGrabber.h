#pragma once

#include <QCoroTask>

#include <memory>
#include <optional>
#include <string>

class Accessibility;
class KeyEvents;
class Pasteboard;

/// Gets the text that the user has selected in the application in front. Called on the main thread,
/// which is never blocked; one call at a time. Nothing is thrown; if there is no text, nothing is
/// returned. Text is valid UTF-8, trimmed, and never empty.
namespace SelectionGrabber {

/// The ports that the functions use.
struct Ports
{
    std::shared_ptr<Accessibility> accessibility;
    std::shared_ptr<KeyEvents> keyEvents;
    std::shared_ptr<Pasteboard> pasteboard;
};

/// The ports of the session that the process runs in, made anew by each call. What a grab has put
/// back on the clipboard may be there only as long as the ports exist.
Ports systemPorts();

/// The selected text, by axSelectedText() or else by copySelection(). Nothing, at once, if the
/// process may not read other applications. Takes less than 900 milliseconds.
QCoro::Task<std::optional<std::string>> grab(Ports ports);

/// The text that the application tells is selected in its focused element.
QCoro::Task<std::optional<std::string>> axSelectedText(Ports ports);

/// The text that the application in front puts on the clipboard within 300 milliseconds after it
/// was sent the shortcut for "copy". Whatever was on the clipboard before is put back.
QCoro::Task<std::optional<std::string>> copySelection(Ports ports);

} // namespace SelectionGrabber

// Says which desktop is served by what: the back end of each port, and what stands in its place in
// sessions that have none.

#include "DesktopKind.h"
#include "ScreenPermission.h"
#include "X11Accessibility.h"
#include "X11GlobalHotKey.h"
#include "X11KeyEvents.h"
#include "X11OutsideClicks.h"
#include "X11Pasteboard.h"
#include "X11Screenshot.h"
#include "X11WindowList.h"

#include <utility>

namespace {

/// For sessions that do not let programs see what is in front.
class NullAccessibility : public Accessibility
{
public:
    bool isTrusted() override { return false; }
    std::optional<std::string> selectedText(std::chrono::milliseconds) override { return {}; }
};

/// For sessions that give programs no hotkeys.
class NullGlobalHotKey : public GlobalHotKey
{
public:
    bool isGranted() const override { return false; }
};

/// For sessions that do not let programs send keys.
class NullKeyEvents : public KeyEvents
{
public:
    Outcome sendCopy() override { return Outcome::notSent; }
};

/// For sessions where programs do not know what happens outside of their windows.
class NullOutsideClicks : public OutsideClicks
{
public:
    void pause() override {}
    void resume() override {}
    void forget() override {}
};

/// For sessions whose clipboard cannot be reached: always empty.
class NullPasteboard : public Pasteboard
{
public:
    std::uint64_t changeCount() override { return 0; }
    Snapshot snapshot(std::chrono::milliseconds) override { return {}; }
    std::optional<std::string> plainText(std::chrono::milliseconds) override { return {}; }
    void clear() override {}
    void write(Item) override {}
    void writeText(std::string) override {}
    bool handOver(std::chrono::milliseconds) override { return false; }
    void serveUntilReplaced() override {}
};

/// An X server lets every program see the whole screen. Other sessions never do, and there is
/// nothing to ask for.
class SessionPermission : public ScreenPermission
{
public:
    bool isGranted() override { return DesktopKind::isX11(); }
    bool request() override { return isGranted(); }
};

/// For sessions in which pictures of the screen cannot be taken.
class NullScreenshot : public Screenshot
{
public:
    std::optional<FileDescriptor> takeScreen() override { return std::nullopt; }
    std::optional<FileDescriptor> takeWindow(std::uint32_t) override { return std::nullopt; }
    std::optional<FileDescriptor> takeRegion() override { return std::nullopt; }
    void cancelRegion() override {}
};

/// For sessions that do not tell programs about each other's windows.
class NullWindowList : public WindowList
{
public:
    std::vector<Window> windows() override { return {}; }
};

/// The `BackEnd` of an X11 session if the X server has what it needs, else a `Null`.
template <typename Port, typename BackEnd, typename Null, typename... Arguments>
std::unique_ptr<Port> chosen(Arguments... arguments)
{
    if (auto connection = DesktopKind::isX11() ? X11Connection::open() : nullptr) {
        auto backEnd = std::make_unique<BackEnd>(std::move(connection), std::move(arguments)...);
        if (backEnd->isAvailable())
            return backEnd;
    }
    return std::make_unique<Null>();
}

} // namespace

std::unique_ptr<Accessibility> Accessibility::create()
{
    return chosen<Accessibility, X11Accessibility, NullAccessibility>();
}

std::unique_ptr<GlobalHotKey> GlobalHotKey::create(std::function<void()> pressed)
{
    return chosen<GlobalHotKey, X11GlobalHotKey, NullGlobalHotKey>(std::move(pressed));
}

std::unique_ptr<KeyEvents> KeyEvents::create()
{
    return chosen<KeyEvents, X11KeyEvents, NullKeyEvents>();
}

std::unique_ptr<OutsideClicks> OutsideClicks::create(std::function<void()> clicked)
{
    return chosen<OutsideClicks, X11OutsideClicks, NullOutsideClicks>(std::move(clicked));
}

std::unique_ptr<Pasteboard> Pasteboard::create()
{
    return chosen<Pasteboard, X11Pasteboard, NullPasteboard>();
}

std::unique_ptr<ScreenPermission> ScreenPermission::create()
{
    return std::make_unique<SessionPermission>();
}

std::unique_ptr<Screenshot> Screenshot::create()
{
    if (DesktopKind::isX11())
        return std::make_unique<X11Screenshot>();
    return std::make_unique<NullScreenshot>();
}

std::unique_ptr<WindowList> WindowList::create()
{
    if (DesktopKind::isX11())
        return std::make_unique<X11WindowList>();
    return std::make_unique<NullWindowList>();
}

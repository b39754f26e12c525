// Says which desktop is served by what: the back end of each port, and what stands in its place in
// sessions that have none.

#include "DesktopKind.h"
#include "X11Accessibility.h"
#include "X11GlobalHotKey.h"
#include "X11KeyEvents.h"
#include "X11OutsideClicks.h"
#include "X11Pasteboard.h"
#include "X11ScreenPermission.h"
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

/// For sessions in which pictures of the screen cannot be taken, and there is nothing to ask for.
class NullScreenPermission : public ScreenPermission
{
public:
    bool isGranted() override { return false; }
    bool request() override { return false; }
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

/// What `createX11` makes in an X11 session, unless that is null; else a `Null`.
template <typename Null, typename Create>
auto chosen(Create createX11) -> decltype(createX11())
{
    auto backEnd = DesktopKind::isX11() ? createX11() : nullptr;
    return backEnd ? std::move(backEnd) : std::make_unique<Null>();
}

} // namespace

std::unique_ptr<Accessibility> Accessibility::create()
{
    return chosen<NullAccessibility>(
        []() -> std::unique_ptr<Accessibility> { return X11Accessibility::create(); });
}

std::unique_ptr<GlobalHotKey> GlobalHotKey::create(std::function<void()> pressed)
{
    return chosen<NullGlobalHotKey>([&]() -> std::unique_ptr<GlobalHotKey> {
        return X11GlobalHotKey::create(std::move(pressed));
    });
}

std::unique_ptr<KeyEvents> KeyEvents::create()
{
    return chosen<NullKeyEvents>(
        []() -> std::unique_ptr<KeyEvents> { return X11KeyEvents::create(); });
}

std::unique_ptr<OutsideClicks> OutsideClicks::create(std::function<void()> clicked)
{
    return chosen<NullOutsideClicks>([&]() -> std::unique_ptr<OutsideClicks> {
        return X11OutsideClicks::create(std::move(clicked));
    });
}

std::unique_ptr<Pasteboard> Pasteboard::create()
{
    return chosen<NullPasteboard>(
        []() -> std::unique_ptr<Pasteboard> { return X11Pasteboard::create(); });
}

std::unique_ptr<ScreenPermission> ScreenPermission::create()
{
    return chosen<NullScreenPermission>([]() -> std::unique_ptr<ScreenPermission> {
        return std::make_unique<X11ScreenPermission>();
    });
}

std::unique_ptr<Screenshot> Screenshot::create()
{
    return chosen<NullScreenshot>(
        []() -> std::unique_ptr<Screenshot> { return std::make_unique<X11Screenshot>(); });
}

std::unique_ptr<WindowList> WindowList::create()
{
    return chosen<NullWindowList>(
        []() -> std::unique_ptr<WindowList> { return std::make_unique<X11WindowList>(); });
}

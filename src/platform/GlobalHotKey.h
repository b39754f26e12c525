#pragma once

#include <functional>
#include <memory>

/// Control, Alt and the key that bears the S on an English keyboard, whatever the layout makes of
/// it and whichever application is in front. Main thread only.
class GlobalHotKey
{
public:
    /// Gives the keys back.
    virtual ~GlobalHotKey() = default;

    /// Whether this program has the keys, as far as the system tells by now.
    virtual bool isGranted() const = 0;

    /// Has `pressed` called by the event loop, once for a press however long the keys are held.
    /// Never called where another program has these keys, or the session lets no program have any.
    static std::unique_ptr<GlobalHotKey> create(std::function<void()> pressed);

protected:
    GlobalHotKey() = default;
    GlobalHotKey(const GlobalHotKey&) = default;
    GlobalHotKey& operator=(const GlobalHotKey&) = default;
};

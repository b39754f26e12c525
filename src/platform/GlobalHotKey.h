#pragma once

#include "Interface.h"

#include <functional>
#include <memory>

/// The global hotkey: Control, Alt and the key that is S on an English keyboard. It works whatever
/// letter the layout puts on that key and whichever application is in front. Main thread only.
class GlobalHotKey : public Interface
{
public:
    /// Gives the hotkey back to other programs.
    ~GlobalHotKey() override = default;

    /// Whether this program has the hotkey, as far as the system has told by now.
    virtual bool isGranted() const = 0;

    /// The event loop will call `pressed` once for each press, however long the keys are held. It
    /// is never called if another program has the hotkey, or if the session gives no program any.
    static std::unique_ptr<GlobalHotKey> create(std::function<void()> pressed);
};

#pragma once

#include "Accessibility.h"
#include "AtSpi.h"
#include "SelectionReader.h"

/// What the application in front of an X11 desktop tells over the accessibility bus, else what it
/// offers as the PRIMARY selection.
class X11Accessibility : public Accessibility
{
public:
    /// Null where no X server answers.
    static std::unique_ptr<X11Accessibility> create();

    /// X11 lets every program read and send everything.
    bool isTrusted() override { return true; }
    std::optional<std::string> selectedText(std::chrono::milliseconds limit) override;

    /// PRIMARY, where it belongs to the application that `window` does.
    std::optional<std::string> primaryText(xcb_window_t window, X11Connection::Deadline deadline);

private:
    explicit X11Accessibility(std::unique_ptr<X11Connection> connection);

    std::unique_ptr<X11Connection> m_connection;
    SelectionReader m_reader;
    AtSpi m_atSpi;
};

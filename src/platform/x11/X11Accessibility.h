#pragma once

#include "Accessibility.h"
#include "AtSpi.h"
#include "FrontApplication.h"
#include "SelectionReader.h"

/// What the application in front of an X11 desktop tells over the accessibility bus. A terminal,
/// which tells little there and cannot be asked to copy, is asked for the PRIMARY selection; any
/// other program may keep that long after nothing is selected in it any more.
class X11Accessibility : public Accessibility
{
public:
    explicit X11Accessibility(std::unique_ptr<X11Connection> connection);

    /// Applications that tell nothing are found out only when they are asked.
    static bool isAvailable() { return true; }
    /// X11 lets every program read and send everything.
    bool isTrusted() override { return true; }
    std::optional<std::string> selectedText(std::chrono::milliseconds limit) override;

private:
    std::optional<std::string> terminalsText(const FrontApplication& terminal,
                                             X11Connection::Deadline deadline);

    std::unique_ptr<X11Connection> m_connection;
    SelectionReader m_reader;
    AtSpi m_atSpi;
};

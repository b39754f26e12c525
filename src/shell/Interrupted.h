#pragma once

/// Thrown where the user interrupted a command; not an error to tell them of.
struct Interrupted
{
    int exitStatus;
};

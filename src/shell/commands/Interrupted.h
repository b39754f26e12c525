#pragma once

/// Thrown when the user has interrupted a command. It is no error that they need to be told about.
struct Interrupted
{
    int exitStatus;
};

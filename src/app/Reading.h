#pragma once

#include "QtText.h"

#include <QString>

#include <exception>
#include <optional>

/// What reading a source has come to. Errors are texts here, not exceptions, which had better stay
/// on the thread that threw them.
struct Reading
{
    QString text;                 // normalised
    std::optional<QString> error; // a sentence, where it failed
    QString share = {};           // which part of the source was read, empty for the whole

    static Reading failed(const std::exception& caught)
    {
        return {.text = {}, .error = QtText::sentence(caught)};
    }
};

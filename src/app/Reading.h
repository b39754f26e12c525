#pragma once

#include "QtText.h"

#include <QString>

#include <exception>
#include <optional>

/// The result of reading a source. An error is kept as text, because an exception had better stay
/// on the thread that threw it.
struct Reading
{
    QString text;                 // normalised
    std::optional<QString> error; // a sentence, if reading has failed
    QString share = {};           // which part of the source was read, empty for the whole

    static Reading failed(const std::exception& caught)
    {
        return {.text = {}, .error = QtText::sentence(caught)};
    }
};

#pragma once

#include <QString>
#include <QStringView>

#include <optional>

/// Character references such as "&amp;" and "&#65;".
namespace CharacterReference {

struct Reference
{
    QString text;         // what it stands for
    qsizetype length = 0; // of the reference, in code units
};

/// The reference that begins at `position` of `text`, if one does: a number, or one of the names
/// that are common in prose (quotation marks, dashes, spaces, a few signs). Any thread.
std::optional<Reference> at(QStringView text, qsizetype position);

} // namespace CharacterReference

#pragma once

#include "DocumentReader.h"

#include <optional>
#include <string>
#include <string_view>

/// The form in which a page of a scan goes from the process that reads a document to the process
/// that waits for it.
namespace PageRecord {

std::string written(const DocumentReader::ScannedPage& page);

/// Takes the record of a page off the beginning of `bytes`. Returns nothing, and leaves `bytes`
/// alone, if no whole valid record is there.
std::optional<DocumentReader::ScannedPage> take(std::string_view& bytes);

} // namespace PageRecord

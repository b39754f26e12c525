#pragma once

#include "DocumentReader.h"

#include <optional>
#include <string>
#include <string_view>

/// Pages of scans as they go from the process that reads a document to the one that waits for it.
namespace PageRecord {

std::string written(const DocumentReader::ScannedPage& page);

/// The page whose record `bytes` begins with; the record is taken off. Nothing where there is no
/// whole one.
std::optional<DocumentReader::ScannedPage> take(std::string_view& bytes);

} // namespace PageRecord

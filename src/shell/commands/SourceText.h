#pragma once

#include "SummaryRequest.h"

#include <string>

/// Reads the source that a command's argument SOURCE names.
namespace SourceText {

/// The text of `source`, which is a file's path, a web address (it has "://" and names no file), or
/// "-" for standard input. Throws AppError, also if there is nothing but white space in the source,
/// and the errors of the system and the network. Blocks. While a page is being fetched, an
/// interrupt ends the process. Main thread; there must be no QCoreApplication.
std::string read(const std::string& source);

/// The text of the source that `request` names, under the same conditions. Throws also what
/// CaptureSource and DesktopSource throw.
std::string read(const SummaryRequest& request);

} // namespace SourceText

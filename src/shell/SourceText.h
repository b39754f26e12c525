#pragma once

#include "SummaryRequest.h"

#include <string>

/// What the argument SOURCE of a command stands for.
namespace SourceText {

/// The text of `source`: a file's path, a web address (which has "://" and names no file), or "-"
/// for standard input. Throws AppError, also when there is nothing in it but white space, and the
/// errors of the system and the network. Blocks. An interrupt while a page is on its way ends the
/// process. Main thread, and no QCoreApplication may be there.
std::string read(const std::string& source);

/// The same of the source that `request` names. Throws also what CaptureSource and DesktopSource
/// do.
std::string read(const SummaryRequest& request);

} // namespace SourceText

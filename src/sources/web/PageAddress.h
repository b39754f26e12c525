#pragma once

#include <QUrl>

#include <string_view>

/// Reads addresses of web pages as users type them. Any thread.
namespace PageAddress {

/// The address that `typed` (valid UTF-8) means. White space around it is removed, and without a
/// scheme it gets "https://" in front. Throws AppError "Enter a valid web address." unless the
/// result has a host and the scheme "http" or "https", in lower case.
QUrl parsed(std::string_view typed);

} // namespace PageAddress

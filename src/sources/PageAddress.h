#pragma once

#include <QUrl>

#include <string_view>

/// Addresses of web pages as users type them. Any thread.
namespace PageAddress {

/// The address that `typed` (valid UTF-8) means: without the white space around it, and with
/// "https://" in front where it names no scheme. Throws AppError "Enter a valid web address."
/// unless that is an address with a host and the scheme "http" or "https", in lower case.
QUrl parsed(std::string_view typed);

} // namespace PageAddress

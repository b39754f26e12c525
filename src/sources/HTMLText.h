#pragma once

#include <QCoroTask>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

/// Web pages as plain "reader-mode" text. The reduction works on the raw HTML with patterns only,
/// so there is no parser that a page could confuse, and it is linear in its input. Text is valid
/// UTF-8.
namespace HTMLText {

/// How long a server may send nothing.
constexpr std::chrono::milliseconds defaultTimeout = std::chrono::seconds(20);

/// The reader text of the page at `address` as a user types it: "https://" goes in front where no
/// scheme is named. Nothing is kept of the transfer, no cookie and no file. Throws AppError, also
/// when the text has fewer than 80 characters, and the network's own error as a
/// std::runtime_error. Called from a thread with an event loop, which it never blocks: reducing
/// the page is work for another thread.
QCoro::Task<std::string> fetch(std::string address,
                               std::chrono::milliseconds timeout = defaultTimeout);

/// The title of the page and its paragraphs of 30 characters or more, with empty lines between
/// them; possibly nothing. Any thread.
std::string readerText(std::string html);

/// What is inside the longest (in characters) element `tag` of `html`, the first of several; a
/// view into `html`, or nothing where there is no such element. Any thread.
std::optional<std::string_view> largestMatch(std::string_view html, std::string_view tag);

/// `text` with its character references replaced: first a fixed table of names, "&amp;" last so
/// that nothing is decoded twice, then numeric ones, of which impossible ones disappear. Any
/// thread.
std::string decodeEntities(std::string_view text);

/// `text` without what the pattern "<[^>]+>" matches. Any thread.
std::string withoutTags(std::string_view text);

} // namespace HTMLText

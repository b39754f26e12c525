#pragma once

#include <QCoroTask>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

/// Reads web pages as plain "reader-mode" text. It finds the text in the raw HTML with patterns
/// only, so there is no parser that a page could confuse. It is linear in its input. Text is valid
/// UTF-8.
namespace HTMLText {

/// How long a server may send nothing before the fetch fails.
constexpr std::chrono::milliseconds defaultTimeout = std::chrono::seconds(20);

/// The reader text of the page at `address`, which is as a user types it; without a scheme it gets
/// "https://" in front. Nothing of the transfer is kept, no cookie and no file. Throws AppError,
/// also if the text has fewer than 80 characters, and the network's own error as a
/// std::runtime_error. Call it from a thread with an event loop. That thread is never blocked,
/// since another one turns the page into text.
QCoro::Task<std::string> fetch(std::string address,
                               std::chrono::milliseconds timeout = defaultTimeout);

/// The title of the page `html` and its paragraphs of 30 characters or more, with empty lines
/// between them. May be empty. Any thread.
std::string readerText(std::string html);

/// The content of the longest (in characters) element `tag` of `html`, the first of several that
/// are equally long. It is a view into `html`. Nothing if there is no such element. Any thread.
std::optional<std::string_view> largestMatch(std::string_view html, std::string_view tag);

/// `text` with its character references replaced. First come the names of a fixed table, "&amp;"
/// last so that nothing is decoded twice. Then come numeric references; impossible ones disappear.
/// Any thread.
std::string decodeEntities(std::string_view text);

/// `text` without whatever matches "<[^>]+>". Any thread.
std::string withoutTags(std::string_view text);

} // namespace HTMLText

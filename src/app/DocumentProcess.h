#pragma once

#include "DocumentText.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

/// Documents read by a process of their own: libraries can hang or crash on hostile ones, and
/// nothing but the end of a process stops them.
namespace DocumentProcess {

/// The argument with which a program is told to be that process, followed by the file's path.
constexpr const char* command = "read-document";

/// How long nothing may come of a document: far above what a scanned page takes on a slow machine.
constexpr std::chrono::milliseconds defaultLimit = std::chrono::minutes(2);

/// What such a process has for its data; a document of the largest size needs most of it.
constexpr std::uint64_t mostMemory = std::uint64_t{4} << 30;

/// What DocumentReader::read returns or throws for `file`, the error always as an AppError; read by
/// a process of the program at the path `program`. Where `limit` passes without a text or a further
/// page of a scan, it is what has been recognised until then. Throws AppError also where that is
/// nothing, where the process takes more than `mostMemory`, and where it fails. Of all calls in
/// this process as many go on at once as there are processors; the others wait, which is no part of
/// the limit. Blocks; any thread.
DocumentText read(const std::filesystem::path& file, const std::string& program,
                  std::chrono::milliseconds limit = defaultLimit);

/// What that process does: writes the text, or the pages of a scan one by one, or the error's
/// sentence, to `stream` and returns its exit status. Main thread.
int serve(const std::filesystem::path& file, std::FILE& stream);

} // namespace DocumentProcess

#pragma once

#include "FileDescriptor.h"

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

/// A file that is not complete yet: it lies beside its destination and is removed with this object
/// unless it has moved into place. Holds a lock (flock) on the file, by which other processes tell
/// it from one that a killed process has left. Failing functions throw std::system_error with a
/// text for users. One thread at a time; all functions may block on the disk.
class PartFile
{
public:
    /// Creates the file, and its folder where that is missing. `name` is what errors call it, such
    /// as "the model file". The process's mask is taken off the permissions.
    PartFile(std::filesystem::path destination, std::string name, mode_t permissions = 0666);
    ~PartFile();
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    /// Appends `bytes`. Under a limit on file sizes this fails only where SIGXFSZ is blocked or
    /// ignored; else the signal ends the process.
    void write(std::string_view bytes);

    /// Makes the file durable, then puts it at the destination in one step, in place of any file
    /// there. Whatever fails, and whenever the power does, the destination has either the old file
    /// or the whole new one.
    void moveIntoPlace();

    /// Removes the files that killed processes have left beside `destination`, as far as possible.
    static void removeAbandoned(const std::filesystem::path& destination);

private:
    [[noreturn]] void failWriting() const;

    std::filesystem::path m_destination;
    std::filesystem::path m_path;
    std::string m_name;
    FileDescriptor m_file;
    std::size_t m_unsynced = 0; // bytes
};

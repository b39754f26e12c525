#pragma once

#include "FileDescriptor.h"

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

/// A file that is still being written. It lies beside its destination, and the destructor removes
/// it unless it has been moved into place. It stays locked (flock), so that other processes can
/// tell it from one that a killed process has left. Functions that fail throw std::system_error
/// with a text for users. One thread at a time; every function may block on the disk.
class PartFile
{
public:
    /// Creates the file, and its folder if that is missing. `name` is what error messages call the
    /// file, such as "the model file". The process's umask is taken off `permissions`.
    PartFile(std::filesystem::path destination, std::string name, mode_t permissions = 0666);
    ~PartFile();
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    /// Appends `bytes`. Beyond a limit on file sizes (RLIMIT_FSIZE) this throws only if the signal
    /// SIGXFSZ is blocked or ignored; otherwise the signal ends the process.
    void write(std::string_view bytes);

    /// Writes the file through to the disk, then renames it to the destination, replacing any file
    /// there. Whatever fails, even the power, the destination has either the old file or the whole
    /// new one.
    void moveIntoPlace();

    /// Removes the part files of `destination` that killed processes have left. Failures are
    /// ignored.
    static void removeAbandoned(const std::filesystem::path& destination);

private:
    [[noreturn]] void failWriting() const;

    std::filesystem::path m_destination;
    std::filesystem::path m_path;
    std::string m_name;
    FileDescriptor m_file;
    std::size_t m_unsynced = 0; // bytes
};

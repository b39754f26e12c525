#include "PartFile.h"

#include "WriteAll.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <random>
#include <sstream>
#include <string>
#include <system_error>

static constexpr std::string_view suffix = ".part";

/// After this many bytes the file is written through to the disk. It bounds each single wait:
/// whoever quits during a download has to wait for one of them.
static constexpr std::size_t syncStep = std::size_t{32} << 20;

/// Throws the error in errno, with `what` before its text.
[[noreturn]] static void fail(const std::string& what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

/// The beginning that the names of all part files of `destination` have.
static std::string prefix(const std::filesystem::path& destination)
{
    return destination.filename().string() + '.';
}

static std::filesystem::path randomPath(const std::filesystem::path& destination)
{
    std::random_device random;
    std::ostringstream name;
    name << prefix(destination) << std::hex << random() << random() << suffix;
    return destination.parent_path() / name.str();
}

/// Locks the file. Returns false if another process has locked or removed it. Where the file system
/// has no locks it counts as locked: nobody else can lock it there, so nobody takes it for
/// abandoned.
static bool lock(const FileDescriptor& file)
{
    if (::flock(file.value(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return false;
    struct stat status;
    return ::fstat(file.value(), &status) == 0 && status.st_nlink > 0;
}

PartFile::PartFile(std::filesystem::path destination, std::string name, mode_t permissions)
    : m_destination(std::move(destination)), m_name(std::move(name))
{
    std::error_code ignored;
    std::filesystem::create_directories(m_destination.parent_path(), ignored);
    // Between the creation and the lock another process may take the file for abandoned and remove
    // it. Then a new one is created.
    do {
        m_path = randomPath(m_destination);
        m_file = FileDescriptor(
            ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions));
        if (m_file.value() < 0)
            failWriting();
    } while (!lock(m_file));
}

PartFile::~PartFile()
{
    if (!m_path.empty())
        ::unlink(m_path.c_str());
}

void PartFile::failWriting() const
{
    fail("Could not write " + m_name);
}

void PartFile::write(std::string_view bytes)
{
    if (writeAll(m_file.value(), bytes) < bytes.size())
        failWriting();
    m_unsynced += bytes.size();
    if (m_unsynced >= syncStep) {
        if (::fdatasync(m_file.value()) != 0)
            failWriting();
        m_unsynced = 0;
    }
}

void PartFile::moveIntoPlace()
{
    if (::fsync(m_file.value()) != 0)
        failWriting();
    if (::rename(m_path.c_str(), m_destination.c_str()) != 0)
        fail("Could not move " + m_name + " into place");
    m_path.clear();
}

void PartFile::removeAbandoned(const std::filesystem::path& destination)
{
    const std::string beginning = prefix(destination);
    std::error_code ignored;
    std::filesystem::directory_iterator entry(destination.parent_path(), ignored);
    for (; entry != std::filesystem::directory_iterator(); entry.increment(ignored)) {
        const std::string name = entry->path().filename().string();
        if (!name.starts_with(beginning) || !name.ends_with(suffix))
            continue;
        // Opened for writing because NFS locks no other files.
        const FileDescriptor file(
            ::open(entry->path().c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (file.value() >= 0 && ::flock(file.value(), LOCK_EX | LOCK_NB) == 0)
            ::unlink(entry->path().c_str());
    }
}

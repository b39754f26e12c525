#include "ModelFile.h"

#include "HomeFolder.h"
#include "ProgramName.h"

#include <cstdlib>
#include <system_error>

namespace ModelFile {

/// The folder for a user's data. The XDG base directory specification says that a relative path in
/// the variable is invalid and must be ignored.
static std::filesystem::path dataHome()
{
    if (const char* home = std::getenv("XDG_DATA_HOME")) {
        std::filesystem::path path(home);
        if (path.is_absolute())
            return path;
    }
    return HomeFolder::path() / ".local" / "share";
}

std::filesystem::path directory()
{
    std::filesystem::path folder = dataHome() / programName;
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    return folder;
}

std::filesystem::path path()
{
    return directory() / name;
}

} // namespace ModelFile

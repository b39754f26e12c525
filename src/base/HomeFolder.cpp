#include "HomeFolder.h"

#include "AppError.h"

#include <cstdlib>

namespace HomeFolder {

std::filesystem::path path()
{
    const char* const home = std::getenv("HOME");
    if (home == nullptr || !std::filesystem::path(home).is_absolute())
        throw AppError("There is no home folder: the variable HOME names none.");
    return home;
}

} // namespace HomeFolder

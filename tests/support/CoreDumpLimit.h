#pragma once

#include <sys/resource.h>

/// Lets this process and those it starts leave core dumps as large as the system allows at all.
/// Returns whether that is more than nothing.
inline bool allowCoreDumps()
{
    rlimit limit = {};
    if (::getrlimit(RLIMIT_CORE, &limit) != 0)
        return false;
    limit.rlim_cur = limit.rlim_max;
    return ::setrlimit(RLIMIT_CORE, &limit) == 0 && limit.rlim_cur > 0;
}

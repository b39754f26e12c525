#include "CoreDumps.h"

#include <sys/resource.h>

namespace CoreDumps {

void forbid()
{
    // Only the limit that counts: a browser that is started for a link may raise it for itself.
    rlimit limit = {};
    if (::getrlimit(RLIMIT_CORE, &limit) != 0)
        return;
    limit.rlim_cur = 0;
    ::setrlimit(RLIMIT_CORE, &limit);
}

} // namespace CoreDumps

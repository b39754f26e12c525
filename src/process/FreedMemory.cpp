#include "FreedMemory.h"

#include <malloc.h>

namespace FreedMemory {

void giveBack()
{
    // The sanitizers have an allocator of their own; glibc's must not be touched beside it.
#if defined(__GLIBC__) && !defined(PITHWISE_SANITIZED)
    // Each thread gets one of several heaps. What one has left between two blocks in use is not
    // used by the next, and so they grow to tens of megabytes each.
    ::malloc_trim(0);
#endif
}

} // namespace FreedMemory

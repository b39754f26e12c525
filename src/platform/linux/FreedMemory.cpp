#include "FreedMemory.h"

#include <malloc.h>

namespace FreedMemory {

void giveBack()
{
#ifdef __GLIBC__
    // Each thread gets one of several heaps. What one has left between two blocks in use is not
    // used by the next, and so they grow to tens of megabytes each.
    ::malloc_trim(0);
#endif
}

} // namespace FreedMemory

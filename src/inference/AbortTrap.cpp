#include "AbortTrap.h"

#include "AppError.h"

#include <ggml.h>

static thread_local int aliveTraps = 0;

static void onAbort(const char* /*message*/)
{
    // -3 is llama.cpp's own code for a failed computation; its message is not fit for users.
    if (aliveTraps > 0)
        throw AppError("Model evaluation failed (-3).");
}

AbortTrap::AbortTrap()
{
    ggml_set_abort_callback(onAbort);
    ++aliveTraps;
}

AbortTrap::~AbortTrap()
{
    --aliveTraps;
}

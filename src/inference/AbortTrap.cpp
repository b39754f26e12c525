#include "AbortTrap.h"

#include "EvaluationError.h"

#include <ggml.h>

static thread_local int aliveTraps = 0;

static void onAbort(const char* /*message*/)
{
    if (aliveTraps > 0)
        throw EvaluationError::of(EvaluationError::failed);
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

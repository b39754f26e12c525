#include "AbortTrap.h"

#include "AppError.h"

#include <ggml.h>
#include <gtest/gtest.h>

#include <csignal>

namespace {

void abortComputation()
{
    ggml_abort("file.c", 1, "%s", "message");
}

TEST(AbortTrapTest, WithinATrapWhatWouldEndTheProcessIsAnError)
{
    const AbortTrap trap;
    EXPECT_THROW(abortComputation(), AppError);
}

TEST(AbortTrapTest, TheEndOfATrapWithinAnotherIsNotTheOthers)
{
    const AbortTrap outer;
    {
        const AbortTrap inner;
    }
    EXPECT_THROW(abortComputation(), AppError);
}

TEST(AbortTrapTest, OutsideOfATrapTheProcessEnds)
{
    {
        const AbortTrap trap;
    }
    EXPECT_EXIT(abortComputation(), testing::KilledBySignal(SIGABRT), "");
}

} // namespace

#include "SingleThreadedOpenMP.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

TEST(SingleThreadedOpenMPTest, WhatOpenMPMayDoIsAsBeforeAfterwards)
{
    const auto levels =
        reinterpret_cast<int (*)()>(::dlsym(RTLD_DEFAULT, "omp_get_max_active_levels"));
    ASSERT_NE(levels, nullptr) << "Tesseract is built without OpenMP";
    const int before = levels();
    EXPECT_GT(before, 0);
    {
        const SingleThreadedOpenMP outer;
        const SingleThreadedOpenMP inner;
        EXPECT_EQ(levels(), 0);
    }
    EXPECT_EQ(levels(), before);
}

} // namespace

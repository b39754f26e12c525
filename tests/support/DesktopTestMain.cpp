#include <gtest/gtest.h>

/// For tests on a desktop: each makes a DesktopSession and after it the application object it
/// needs, so there is none here. ctest runs each test in a process of its own.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

#include "X11Connection.h"

#include "DesktopSession.h"

#include <gtest/gtest.h>

#include <barrier>
#include <future>
#include <vector>

namespace {

// What goes wrong otherwise is memory that is lost or used after its end: the address sanitizer
// sees it in one run of seven.
TEST(X11ConnectionTest, TheFirstConnectionsMayBeOpenedAtOnceOnManyThreads)
{
    const DesktopSession session;
    std::barrier start(8);
    std::vector<std::future<bool>> connections(8);
    for (auto& connection : connections)
        connection = std::async(std::launch::async, [&start] {
            start.arrive_and_wait();
            return X11Connection::open() != nullptr;
        });
    for (auto& connection : connections)
        EXPECT_TRUE(connection.get());
}

} // namespace

#pragma once

#include <functional>
#include <string>

/// Work that gives an answer and may go on after the program that started it has ended.
namespace BackgroundTask {

using Answer = std::function<void(const std::string&)>;

/// Runs `task` in a process of its own and returns what it passes to its argument, once; empty
/// where it ends without. The task has no standard streams, and is not stopped with the terminal's
/// programs. Blocks until the answer. Throws std::system_error. Main thread, before any other is
/// started.
std::string run(const std::function<void(const Answer&)>& task);

} // namespace BackgroundTask

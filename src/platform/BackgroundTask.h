#pragma once

#include <functional>
#include <string>
#include <vector>

/// Work that gives an answer and may go on after the program that started it has ended.
namespace BackgroundTask {

using Answer = std::function<void(const std::string&)>;

/// Runs `task` in a process of its own and returns what it passes to its argument, once; empty
/// where it ends without. The task has no standard streams, and is not stopped with the terminal's
/// programs. Blocks until the answer. Throws std::system_error. Main thread, before any other is
/// started.
std::string run(const std::function<void(const Answer&)>& task);

/// Starts this program anew with `arguments`, and with `input` as the whole of its standard input.
/// Returns what it writes to its standard output, once it has closed that or ended; it may go on
/// after both. It keeps nothing else of this process open, and is not stopped with the terminal's
/// programs. Throws std::system_error. Any thread, whatever others are running.
std::string runProgram(const std::vector<std::string>& arguments, const std::string& input);

} // namespace BackgroundTask

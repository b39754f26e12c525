#pragma once

#include <chrono>
#include <string>
#include <vector>

/// Processes that do one piece of work for this one.
namespace ChildProcess {

enum class End {
    exited,
    killed, // by the system or by itself
    timedOut
};

struct Result
{
    End end;
    int exitStatus = 0; // of one that exited
    std::string output; // on standard output, also of one that was killed
};

/// Runs the program words[0] (a path) with the arguments that follow, without input; what it writes
/// to standard error is dropped. It is killed where it writes nothing for longer than `limit`.
/// Throws std::system_error when it cannot be started. Blocks; any thread.
Result run(std::vector<std::string> words, std::chrono::milliseconds limit);

/// The path of the program that is running, by which run() finds it even when its file has been
/// replaced since.
std::string thisProgram();

/// From now on the calling process, run by another's run(), is killed when that one ends.
void endWithParent();

} // namespace ChildProcess

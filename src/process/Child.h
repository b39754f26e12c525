#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

/// Programs that this one starts for one piece of work, and what they do about it themselves. They
/// have nothing of this process's own ways with signals, and what they write to standard error is
/// dropped. Any thread, whatever others are running.
namespace Child {

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

/// The path of the program that is running, by which it is found even where its file has been
/// replaced since.
std::string thisProgram();

/// Runs the program words[0] (a path) with the arguments that follow, and with `input` as the whole
/// of its standard input. It is killed where it writes nothing for longer than `limit`. A
/// descriptor that this process was started with it has as well, so that it can open /dev/fd/3.
/// Throws std::system_error when it cannot be started. Blocks until its end.
Result run(std::vector<std::string> words, std::chrono::milliseconds limit,
           std::string_view input = {});

/// Starts such a program in the background: in a session of its own, so that it is not stopped with
/// the terminal's programs, and without a descriptor or a folder of this process. Returns what it
/// writes to its standard output, once it has closed that or ended; it may go on after both. Throws
/// std::system_error. Blocks until then.
std::string detach(std::vector<std::string> words, std::string_view input = {});

/// For a program that another one's run() has started: from now on it is killed when that one ends,
/// and now where that has ended already.
void endWithParent();

/// For a program that another one's detach() has started: has that return `output`. Goes on
/// without, where nobody waits for it any more. Once.
void tell(std::string_view output);

} // namespace Child

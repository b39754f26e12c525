#pragma once

/// The program `pithwise` as a command line.
namespace CommandLine {

/// Runs the command that the arguments name and returns the exit status of the process: 0 upon
/// success, 1 after an error (one sentence on standard error), 2 after wrong usage, 130 after an
/// interrupt. Main thread.
int run(int argc, char** argv);

} // namespace CommandLine

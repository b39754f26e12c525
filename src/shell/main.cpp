#include "BackgroundThreads.h"
#include "CommandLine.h"
#include "CoreDumps.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>

/// Ends the process at once if work goes on that nothing can end, such as the loading of a model.
/// The static objects of the libraries that it uses must not be destroyed while it runs.
static void endBesideWork(int status)
{
    if (!BackgroundThreads::isWorkLeft())
        return;
    std::cout.flush();
    std::fflush(nullptr);
    std::_Exit(status);
}

int main(int argc, char** argv)
{
    CoreDumps::forbid();
    const int status = CommandLine::run(argc, argv);
    endBesideWork(status);
    return status;
}

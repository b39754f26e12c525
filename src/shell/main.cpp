#include "BackgroundThreads.h"
#include "CommandLine.h"
#include "CoreDumps.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>

/// Work that nothing can end may go on, the loading of a model for instance. The static objects of
/// the libraries it is in must not be destroyed under it.
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

#pragma once

/// llama.cpp aborts the whole process when something happens that its authors ruled out, and a
/// damaged or foreign model file can make that happen. While an AbortTrap is alive, such an abort
/// on this thread throws an AppError instead. Use it only for code that runs on the calling thread
/// alone (loading, tokenising, sampling). In evaluation the worker threads would then wait for
/// ever.
class AbortTrap
{
public:
    AbortTrap();
    ~AbortTrap();
    AbortTrap(const AbortTrap&) = delete;
    AbortTrap& operator=(const AbortTrap&) = delete;
};

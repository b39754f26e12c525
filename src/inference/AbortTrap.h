#pragma once

/// llama.cpp ends the whole process where it meets something its authors ruled out, and a damaged
/// or foreign model file can lead it there. While an AbortTrap is alive, such an abort on this
/// thread throws an AppError instead. For code that runs on the calling thread alone
/// (loading, tokenising, sampling), not for evaluation, whose worker threads would wait for ever.
class AbortTrap
{
public:
    AbortTrap();
    ~AbortTrap();
    AbortTrap(const AbortTrap&) = delete;
    AbortTrap& operator=(const AbortTrap&) = delete;
};

#pragma once

/// The parts of llama.cpp that compute, one for every kind of processor, where they are libraries
/// of their own.
namespace Backends {

/// Loads those that fit this machine, the first time it is called. Does nothing where llama.cpp
/// was built for one kind of processor and has all in itself. Any thread.
void load();

} // namespace Backends

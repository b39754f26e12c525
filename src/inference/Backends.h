#pragma once

/// llama.cpp's back ends, the parts that compute. They may be shared libraries, one for every kind
/// of processor.
namespace Backends {

/// Loads the back ends that fit this machine. Only the first call has an effect. Does nothing where
/// llama.cpp was built for one kind of processor, with the back end inside. Any thread.
void load();

} // namespace Backends

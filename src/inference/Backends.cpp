#include "Backends.h"

#ifdef PITHWISE_BACKEND_DIR

#include <dlfcn.h>
#include <ggml-backend.h>
#include <llama.h>

#include <filesystem>
#include <mutex>

/// The folder of the back ends. A relative PITHWISE_BACKEND_DIR counts from the folder of
/// llama.cpp's library, so that an installation works wherever it is put.
static std::filesystem::path folder()
{
    Dl_info library = {};
    if (::dladdr(reinterpret_cast<const void*>(&llama_backend_init), &library) == 0)
        return PITHWISE_BACKEND_DIR;
    return std::filesystem::path(library.dli_fname).parent_path() / PITHWISE_BACKEND_DIR;
}

void Backends::load()
{
    // Back ends loaded twice would be in llama.cpp's list twice. They come from this folder only:
    // if none were given, llama.cpp would look into the working directory too.
    static std::once_flag once;
    std::call_once(once, [] { ggml_backend_load_all_from_path(folder().c_str()); });
}

#else

void Backends::load() {}

#endif

#include "SingleThreadedOpenMP.h"

#include <dlfcn.h>

namespace {

using Get = int (*)();
using Set = void (*)(int);

/// The function of OpenMP with this name, null if Tesseract was built without OpenMP. It is looked
/// up in the process, so that it belongs to the library that Tesseract brings, whatever compiler
/// built us.
template <typename Function>
Function find(const char* name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_DEFAULT, name));
}

Get levels()
{
    static const Get function = find<Get>("omp_get_max_active_levels");
    return function;
}

Set setLevels()
{
    static const Set function = find<Set>("omp_set_max_active_levels");
    return function;
}

} // namespace

SingleThreadedOpenMP::SingleThreadedOpenMP()
{
    if (levels() == nullptr || setLevels() == nullptr)
        return;
    m_levels = levels()();
    setLevels()(0);
}

SingleThreadedOpenMP::~SingleThreadedOpenMP()
{
    if (levels() != nullptr && setLevels() != nullptr)
        setLevels()(m_levels);
}

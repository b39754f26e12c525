#include "OneThread.h"

#include <dlfcn.h>

namespace {

using Get = int (*)();
using Set = void (*)(int);

/// Looked up in the process, so that it is the library that Tesseract brings, whatever compiler
/// built us; null where Tesseract is built without.
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

OneThread::OneThread()
{
    if (levels() == nullptr || setLevels() == nullptr)
        return;
    m_levels = levels()();
    setLevels()(0);
}

OneThread::~OneThread()
{
    if (levels() != nullptr && setLevels() != nullptr)
        setLevels()(m_levels);
}

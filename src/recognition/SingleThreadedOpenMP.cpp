#include "SingleThreadedOpenMP.h"

#include <dlfcn.h>

/// The function of OpenMP with this name, null if Tesseract was built without OpenMP. It is looked
/// up in the process, so that it belongs to the library that Tesseract brings, whatever compiler
/// built us.
template <typename Function>
static Function* find(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_DEFAULT, name));
}

SingleThreadedOpenMP::SingleThreadedOpenMP()
    : m_setLevels(find<void(int)>("omp_set_max_active_levels"))
{
    auto* const levels = find<int()>("omp_get_max_active_levels");
    if (levels == nullptr || m_setLevels == nullptr)
        return;
    m_levels = levels();
    m_setLevels(0);
}

SingleThreadedOpenMP::~SingleThreadedOpenMP()
{
    if (m_setLevels != nullptr)
        m_setLevels(m_levels);
}

# The warnings every target of ours is built with; errors where PITHWISE_WERROR is on (CI).
option(PITHWISE_WERROR "Treat warnings as errors" OFF)

add_library(pithwise_warnings INTERFACE)
target_compile_options(pithwise_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  # Locks are always an error: what base/Mutex.h marks is wrong or it is not, whatever the version.
  target_compile_options(pithwise_warnings INTERFACE -Wreserved-identifier -Wreserved-macro-identifier
                                             -Wthread-safety -Werror=thread-safety)
endif()
if(PITHWISE_WERROR)
  target_compile_options(pithwise_warnings INTERFACE -Werror)
endif()

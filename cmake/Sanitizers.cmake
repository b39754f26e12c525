# PITHWISE_SANITIZE takes a list for -fsanitize=, e.g. "address,undefined" or "thread".
set(PITHWISE_SANITIZE "" CACHE STRING "Sanitizers to build with")

if(PITHWISE_SANITIZE)
  add_compile_options(-fsanitize=${PITHWISE_SANITIZE} -fno-omit-frame-pointer)
  add_compile_definitions(PITHWISE_SANITIZED)
  add_link_options(-fsanitize=${PITHWISE_SANITIZE})
  if(PITHWISE_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize-recover=undefined)
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
      # Clang 14 miscompiles coroutines with the function check on.
      add_compile_options(-fno-sanitize=function)
    endif()
  endif()
endif()

# What programs and libraries for users are built with, so that a mistake with memory ends them before
# somebody puts it to use. llama.cpp is always built so, for its build is shared by all presets; our own
# sources where PITHWISE_HARDENED is on.
option(PITHWISE_HARDENED "Build hardened, as a package is" OFF)

# Some compilers define a level of their own, which must not be defined twice.
set(PITHWISE_HARDENING_FLAGS -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64|i.86")
  list(APPEND PITHWISE_HARDENING_FLAGS -fcf-protection)
endif()
set(PITHWISE_HARDENING_LINK_FLAGS -Wl,-z,relro,-z,now)

if(PITHWISE_HARDENED)
  include(CheckPIESupported)
  check_pie_supported()
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  add_compile_options(${PITHWISE_HARDENING_FLAGS})
  add_link_options(${PITHWISE_HARDENING_LINK_FLAGS})
endif()

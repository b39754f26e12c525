# Provides the imported target `llama`, from the first of:
#   1. an installed llama.cpp that is new enough,
#   2. the source folder in PITHWISE_LLAMA_SOURCE,
#   3. the pinned source, fetched by name and checked, built once into PITHWISE_CACHE_DIR.
# Sets PITHWISE_LLAMA_SOURCE_DIR (empty for an installed one) and PITHWISE_LLAMA_BUILD_DIR, which
# the benchmarks need, PITHWISE_LLAMA_LIBRARY_DIR for packages, and PITHWISE_TOKENIZER_DIR, where the
# real tokenizer is for tests.

include(ProcessorCount)

set(PITHWISE_LLAMA_SOURCE "" CACHE PATH "Source folder of llama.cpp to use instead of the pinned one")
option(PITHWISE_LLAMA_ALL_VARIANTS
       "Build llama.cpp with every CPU variant as loadable back ends (for packages)" OFF)
set(PITHWISE_LLAMA_GPU "" CACHE STRING
    "With all variants: loadable GPU back ends to build as well, e.g. \"VULKAN;CUDA\"")
if(DEFINED ENV{XDG_CACHE_HOME} AND NOT "$ENV{XDG_CACHE_HOME}" STREQUAL "")
  set(_default_cache "$ENV{XDG_CACHE_HOME}/pithwise")
else()
  set(_default_cache "$ENV{HOME}/.cache/pithwise")
endif()
set(PITHWISE_CACHE_DIR "${_default_cache}" CACHE PATH "Where the built llama.cpp is kept")

# The npm package carries the whole source of the release as a git bundle.
set(_llama_version 0.5.0)
set(_llama_package node-llama-cpp@3.22.1)
set(_llama_archive node-llama-cpp-3.22.1.tgz)
string(CONCAT _llama_sha512
       "6e5b488a9b9699cd76dc7eed30880318a4ac4ab866865418795502e3c5d38d55"
       "bb5c624988927209d95333343f2e25a83e4183a5c2f816f883a60c3ba9f4e20f")

function(_pithwise_llama_run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${what} failed (${status}).")
  endif()
endfunction()

# Fetches and unpacks the pinned source into `source`, unless it is there already.
function(_pithwise_llama_fetch source)
  if(EXISTS "${source}/CMakeLists.txt")
    return()
  endif()
  find_program(PITHWISE_NPM npm)
  find_program(PITHWISE_GIT git)
  if(NOT PITHWISE_NPM OR NOT PITHWISE_GIT)
    message(FATAL_ERROR "Fetching llama.cpp needs npm and git; install them, or give a source "
                        "folder with -DPITHWISE_LLAMA_SOURCE=DIR.")
  endif()
  set(work "${PITHWISE_CACHE_DIR}/fetch")
  set(archive "${work}/${_llama_archive}")
  file(REMOVE_RECURSE "${work}")
  file(MAKE_DIRECTORY "${work}")
  message(STATUS "Fetching the source of llama.cpp ${_llama_version}")
  _pithwise_llama_run("Fetching ${_llama_package}" ${PITHWISE_NPM} pack ${_llama_package}
                      --ignore-scripts --loglevel=error --pack-destination "${work}")
  file(SHA512 "${archive}" sha512)
  if(NOT sha512 STREQUAL _llama_sha512)
    file(REMOVE "${archive}")
    message(FATAL_ERROR "The fetched ${_llama_package} does not have the expected SHA-512.")
  endif()
  file(ARCHIVE_EXTRACT INPUT "${archive}" DESTINATION "${work}"
       PATTERNS package/llama/gitRelease.bundle)
  _pithwise_llama_run("Unpacking llama.cpp" ${PITHWISE_GIT} -c advice.detachedHead=false clone
                      --quiet "${work}/package/llama/gitRelease.bundle" "${work}/source")
  # A rename, so that an interrupted fetch never looks like a finished one.
  file(RENAME "${work}/source" "${source}")
  file(REMOVE_RECURSE "${work}")
endfunction()

# The flags of the build; everything but the libraries is off.
function(_pithwise_llama_flags out)
  list(JOIN PITHWISE_HARDENING_FLAGS " " hardening)
  list(JOIN PITHWISE_HARDENING_LINK_FLAGS " " hardened_links)
  set(flags -DCMAKE_BUILD_TYPE=Release -DCMAKE_POSITION_INDEPENDENT_CODE=ON
            -DLLAMA_BUILD_IS_DEV=OFF -DLLAMA_BUILD_TESTS=OFF -DLLAMA_BUILD_TOOLS=OFF
            -DLLAMA_BUILD_EXAMPLES=OFF -DLLAMA_BUILD_SERVER=OFF -DLLAMA_BUILD_APP=OFF
            -DLLAMA_BUILD_COMMON=OFF -DGGML_CCACHE=OFF
            # ggml's own threads: one thread pool less in the process, and nothing that changes
            # how Tesseract's OpenMP behaves beside it.
            -DGGML_OPENMP=OFF
            # ggml's C code calls back into C++ that may throw (see inference/AbortTrap.h).
            "-DCMAKE_C_FLAGS=-fexceptions ${hardening}" "-DCMAKE_CXX_FLAGS=${hardening}"
            "-DCMAKE_SHARED_LINKER_FLAGS=${hardened_links}"
            "-DCMAKE_MODULE_LINKER_FLAGS=${hardened_links}")
  if(PITHWISE_LLAMA_ALL_VARIANTS)
    list(APPEND flags -DBUILD_SHARED_LIBS=ON -DGGML_BACKEND_DL=ON -DGGML_CPU_ALL_VARIANTS=ON
                      -DGGML_NATIVE=OFF)
    foreach(gpu IN LISTS PITHWISE_LLAMA_GPU)
      list(APPEND flags -DGGML_${gpu}=ON)
    endforeach()
  else()
    list(APPEND flags -DBUILD_SHARED_LIBS=OFF -DGGML_NATIVE=ON)
  endif()
  set(${out} ${flags} PARENT_SCOPE)
endfunction()

# What the build depends on besides its source: the flags and, for a native build, the processor.
function(_pithwise_llama_key out flags)
  set(processor "")
  if(NOT PITHWISE_LLAMA_ALL_VARIANTS AND EXISTS /proc/cpuinfo)
    file(STRINGS /proc/cpuinfo processor REGEX "^(flags|Features|model name)" LIMIT_COUNT 2)
  endif()
  string(SHA256 hash "${flags};${processor}")
  string(SUBSTRING "${hash}" 0 12 hash)
  set(${out} "${hash}" PARENT_SCOPE)
endfunction()

function(_pithwise_llama_build source build prefix flags)
  ProcessorCount(jobs)
  if(jobs EQUAL 0)
    set(jobs 1)
  endif()
  message(STATUS "Building llama.cpp from ${source} (a few minutes, once)")
  _pithwise_llama_run("Configuring llama.cpp" ${CMAKE_COMMAND} -S "${source}" -B "${build}"
                      -G "${CMAKE_GENERATOR}" ${flags} "-DCMAKE_INSTALL_PREFIX=${prefix}"
                      -DCMAKE_INSTALL_LIBDIR=lib -DCMAKE_INSTALL_BINDIR=lib --log-level=WARNING)
  _pithwise_llama_run("Building llama.cpp" ${CMAKE_COMMAND} --build "${build}" -j${jobs})
  _pithwise_llama_run("Installing llama.cpp" ${CMAKE_COMMAND} --install "${build}" --strip)
  file(TOUCH "${prefix}/complete")
endfunction()

# What an earlier configuration found in our own cache is not an installed one.
foreach(_package llama ggml)
  string(FIND "${${_package}_DIR}" "${PITHWISE_CACHE_DIR}/" _position)
  if(_position EQUAL 0)
    unset(${_package}_DIR CACHE)
  endif()
endforeach()
find_package(llama ${_llama_version} CONFIG QUIET)
if(llama_FOUND AND NOT PITHWISE_LLAMA_SOURCE)
  set(PITHWISE_LLAMA_SOURCE_DIR "")
  set(_llama_backends "${GGML_BACKEND_DIR}")
  if(PITHWISE_TESTS OR PITHWISE_BENCH)
    # For the real tokenizer only, which tests and benchmarks take from the source.
    set(PITHWISE_TOKENIZER_DIR "${PITHWISE_CACHE_DIR}/llama-${_llama_version}-source/models")
    _pithwise_llama_fetch("${PITHWISE_CACHE_DIR}/llama-${_llama_version}-source")
  endif()
else()
  file(MAKE_DIRECTORY "${PITHWISE_CACHE_DIR}")
  # Two configurations at once must not build into the same folder.
  file(LOCK "${PITHWISE_CACHE_DIR}/lock" GUARD FILE TIMEOUT 1800)
  _pithwise_llama_flags(_llama_flags)
  _pithwise_llama_key(_llama_key "${_llama_flags}")
  if(PITHWISE_LLAMA_SOURCE)
    set(PITHWISE_LLAMA_SOURCE_DIR "${PITHWISE_LLAMA_SOURCE}")
    string(SHA256 _source_key "${PITHWISE_LLAMA_SOURCE}")
    string(SUBSTRING "${_source_key}" 0 12 _source_key)
  else()
    set(PITHWISE_LLAMA_SOURCE_DIR "${PITHWISE_CACHE_DIR}/llama-${_llama_version}-source")
    set(_source_key ${_llama_version})
    _pithwise_llama_fetch("${PITHWISE_LLAMA_SOURCE_DIR}")
  endif()
  set(PITHWISE_TOKENIZER_DIR "${PITHWISE_LLAMA_SOURCE_DIR}/models")
  set(_llama_prefix "${PITHWISE_CACHE_DIR}/llama-${_source_key}-${_llama_key}")
  set(PITHWISE_LLAMA_BUILD_DIR "${_llama_prefix}-build")
  # A folder somebody works in is built again every time; ninja finds out what has changed.
  if(PITHWISE_LLAMA_SOURCE OR NOT EXISTS "${_llama_prefix}/complete")
    _pithwise_llama_build("${PITHWISE_LLAMA_SOURCE_DIR}" "${PITHWISE_LLAMA_BUILD_DIR}"
                          "${_llama_prefix}" "${_llama_flags}")
  endif()
  file(LOCK "${PITHWISE_CACHE_DIR}/lock" RELEASE)
  find_package(llama CONFIG REQUIRED PATHS "${_llama_prefix}" NO_DEFAULT_PATH)
  set(_llama_backends "${_llama_prefix}/lib")
endif()

set(PITHWISE_LLAMA_LIBRARY_DIR "${_llama_backends}")
if(PITHWISE_PACKAGE)
  set(_llama_backends ".") # beside llama.cpp's library, wherever that is installed
endif()
if(GGML_BACKEND_DL)
  set_property(TARGET llama APPEND PROPERTY INTERFACE_COMPILE_DEFINITIONS
               PITHWISE_BACKEND_DIR="${_llama_backends}")
endif()

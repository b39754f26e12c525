# Builds llama-bench from SOURCE in BUILD, the folder llama.cpp was built in, so that it measures the
# very same ggml and llama without compiling them again. Needs neither the network nor further
# packages: what llama.cpp's common library would use OpenSSL for stays out.

# A configuration of ours must not work in the folder at the same time.
file(LOCK "${LOCK}" TIMEOUT 1800)
execute_process(
  COMMAND ${CMAKE_COMMAND} -S "${SOURCE}" -B "${BUILD}" -DLLAMA_BUILD_COMMON=ON
          -DLLAMA_BUILD_TOOLS=ON -DLLAMA_OPENSSL=OFF --log-level=WARNING
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build "${BUILD}" --target llama-bench
                COMMAND_ERROR_IS_FATAL ANY)

# Builds for WebAssembly with Debian's emscripten and runs the tests under Node.js.
set(EMSCRIPTEN_SYSTEM_PROCESSOR wasm32)
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)

# WebAssembly's own exceptions; the other way goes through JavaScript at every call that may throw.
set(CMAKE_CXX_FLAGS_INIT "-fwasm-exceptions -msimd128 -isystem ${CMAKE_CURRENT_LIST_DIR}/wasm")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-fwasm-exceptions -sALLOW_MEMORY_GROWTH=1")

# Emscripten's scripts need Debian's Node.js modules, which a Node.js from elsewhere does not look for.
set(CMAKE_CXX_LINKER_LAUNCHER env NODE_PATH=/usr/share/nodejs)

# With fetch, the loader that this emscripten writes takes Node.js for a browser.
set(CMAKE_CROSSCOMPILING_EMULATOR node;--no-experimental-fetch)

# Threads are what emscripten has without shared memory: locks that need not wait.
set(CMAKE_HAVE_LIBC_PTHREAD TRUE)

# WebAssembly, with emscripten: Debian's package or a newer one in the PATH.
#
#   cmake --preset web
#   cmake --build --preset web
find_program(KESTRAN_EMCC emcc)
if(NOT KESTRAN_EMCC)
    message(FATAL_ERROR "The web build needs emscripten: install Debian's package of that name.")
endif()
file(REAL_PATH "${KESTRAN_EMCC}" KESTRAN_EMCC_FILE)
cmake_path(GET KESTRAN_EMCC_FILE PARENT_PATH KESTRAN_EMSCRIPTEN)
include("${KESTRAN_EMSCRIPTEN}/cmake/Modules/Platform/Emscripten.cmake")

# 64-bit Windows, built on Linux. Needs the Debian packages g++-mingw-w64-x86-64-posix and, to run
# programs, wine:
#
#   cmake --preset windows
#   cmake --build --preset windows
#
# The programs are linked statically and need only the libraries of Windows.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

include("${CMAKE_CURRENT_LIST_DIR}/CrossCompiling.cmake")
kestran_target_root(/usr/x86_64-w64-mingw32)
kestran_emulator(wine)

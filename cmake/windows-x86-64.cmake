# Builds for 64-bit Windows on Linux, with g++-mingw-w64-x86-64-posix from Debian's packages:
#
#   cmake --preset windows
#   cmake --build --preset windows
#
# The programs need no library that Windows does not have. wine runs them.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

include("${CMAKE_CURRENT_LIST_DIR}/CrossCompiling.cmake")
kestran_target_root(/usr/x86_64-w64-mingw32)
kestran_emulator(wine)

# Builds for 64-bit ARM on Linux, with g++-aarch64-linux-gnu from Debian's packages. qemu-user
# runs the programs.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

include("${CMAKE_CURRENT_LIST_DIR}/CrossCompiling.cmake")
kestran_target_root(/usr/aarch64-linux-gnu)
kestran_emulator(qemu-aarch64 -L /usr/aarch64-linux-gnu)

# 64-bit ARM Linux. Needs the Debian packages g++-aarch64-linux-gnu and, to run programs, qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

include("${CMAKE_CURRENT_LIST_DIR}/CrossCompiling.cmake")
kestran_target_root(/usr/aarch64-linux-gnu)
kestran_emulator(qemu-aarch64 -L /usr/aarch64-linux-gnu)

# Builds for 64-bit ARM on Linux, with g++-aarch64-linux-gnu from Debian's packages. qemu-user
# runs the programs.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
find_program(QEMU qemu-aarch64)
if(QEMU)
    set(CMAKE_CROSSCOMPILING_EMULATOR "${QEMU};-L;/usr/aarch64-linux-gnu")
endif()

# Programs of the system that builds, libraries of the one that is built for.
set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Builds for IBM Z on Linux, with g++-s390x-linux-gnu from Debian's packages. Its numbers begin
# with their highest byte. qemu-user runs the programs.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR s390x)

set(CMAKE_CXX_COMPILER s390x-linux-gnu-g++)
find_program(QEMU qemu-s390x)
if(QEMU)
    set(CMAKE_CROSSCOMPILING_EMULATOR "${QEMU};-L;/usr/s390x-linux-gnu")
endif()

# Programs of the system that builds, libraries of the one that is built for.
set(CMAKE_FIND_ROOT_PATH /usr/s390x-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

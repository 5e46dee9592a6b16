# IBM Z Linux, which is big-endian. Needs the Debian packages g++-s390x-linux-gnu and, to run
# programs, qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR s390x)

set(CMAKE_CXX_COMPILER s390x-linux-gnu-g++)

include("${CMAKE_CURRENT_LIST_DIR}/CrossCompiling.cmake")
kestran_target_root(/usr/s390x-linux-gnu)
kestran_emulator(qemu-s390x -L /usr/s390x-linux-gnu)

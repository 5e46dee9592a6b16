# Shared by the toolchain files.

# kestran_target_root(FOLDER): finds libraries and headers in FOLDER, programs on the build host.
macro(kestran_target_root folder)
    set(CMAKE_FIND_ROOT_PATH "${folder}")
    set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
    set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
    set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
    set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
endmacro()

# kestran_emulator(PROGRAM [ARGUMENT...]): runs the built programs with PROGRAM if it is installed.
macro(kestran_emulator program)
    find_program(KESTRAN_EMULATOR ${program})
    if(KESTRAN_EMULATOR)
        set(CMAKE_CROSSCOMPILING_EMULATOR "${KESTRAN_EMULATOR}" ${ARGN})
    endif()
endmacro()

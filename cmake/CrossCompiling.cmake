# What the files for other machines beside this one share.

# kestran_target_root(FOLDER): libraries and headers come from there, programs from the system
# that builds.
macro(kestran_target_root folder)
    set(CMAKE_FIND_ROOT_PATH "${folder}")
    set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
    set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
    set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
    set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
endmacro()

# kestran_emulator(PROGRAM [ARGUMENT...]): runs what is built, where the system has it.
macro(kestran_emulator program)
    find_program(KESTRAN_EMULATOR ${program})
    if(KESTRAN_EMULATOR)
        set(CMAKE_CROSSCOMPILING_EMULATOR "${KESTRAN_EMULATOR}" ${ARGN})
    endif()
endmacro()

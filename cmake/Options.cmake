# Every option of the build, in one place.
#
#   cmake -S . -B build -DKESTRAN_LOG=ON
#
# CMakePresets.json names the combinations in daily use.

# Without a wish for another one, the build is the optimised one.
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Debug, Release, RelWithDebInfo" FORCE)
endif()

option(KESTRAN_TESTS "Build the tests; needs GoogleTest" OFF)
option(KESTRAN_BENCHMARKS "Build the benchmarks; needs Google Benchmark" OFF)
option(KESTRAN_LOG "Write the log to standard error; for reading along, not for play" OFF)
option(KESTRAN_CHECK_POSITIONS "Check the whole position after every move; slow" OFF)
option(KESTRAN_WERROR "Treat warnings as errors" OFF)
option(KESTRAN_FUZZ "Build the fuzz targets; needs Clang" OFF)
option(KESTRAN_COVERAGE "Count what runs, for tools/coverage; needs Clang" OFF)
option(KESTRAN_DEBIAN "Install as Debian does: programs to games/; see Package.cmake" OFF)
option(KESTRAN_HIDE_PATHS "Keep the path of the sources out of the programs, to hand them out" OFF)
# portable: every 64-bit x86, or whatever the compiler takes by itself; x86-64-v3: processors
# from 2013 on or so; native: the machine that builds, where the compiler knows it.
set(KESTRAN_ARCH "portable" CACHE STRING "Processor to build for: portable, x86-64-v3, native")
set_property(CACHE KESTRAN_ARCH PROPERTY STRINGS portable x86-64-v3 native)
# A build by profile takes two rounds in one folder; see HACKING.md. GCC only.
set(KESTRAN_PROFILE "" CACHE STRING "record what runs how often, or use what was recorded")
set_property(CACHE KESTRAN_PROFILE PROPERTY STRINGS "" record use)
set(KESTRAN_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined")

# What the options mean for every target.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion)
# Each executable keeps only what it calls: the engine has no use for the watched search.
add_compile_options(-ffunction-sections -fdata-sections)
add_link_options(-Wl,--gc-sections)
# A program at a fixed address reaches a table in one instruction less. Who wants its address
# drawn at each start, as distributions do, sets CMAKE_POSITION_INDEPENDENT_CODE.
if(NOT CMAKE_POSITION_INDEPENDENT_CODE AND NOT KESTRAN_SANITIZE)
    add_compile_options(-fno-pie)
    add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-no-pie>)
endif()
# Built for 32 bits, a list that GCC inlines looks to it as if it were read before it is filled, and
# a text that is put behind another as if it lay in it.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    add_compile_options(-Wno-maybe-uninitialized -Wno-restrict)
endif()
if(KESTRAN_PROFILE)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        message(FATAL_ERROR "KESTRAN_PROFILE needs GCC")
    elseif(KESTRAN_PROFILE STREQUAL "record")
        # What an earlier round has left belongs to other code.
        file(GLOB_RECURSE oldRecords "${CMAKE_BINARY_DIR}/*.gcda")
        if(oldRecords)
            file(REMOVE ${oldRecords})
        endif()
        add_compile_options(-fprofile-generate)
        add_link_options(-fprofile-generate)
    elseif(KESTRAN_PROFILE STREQUAL "use")
        file(GLOB_RECURSE records "${CMAKE_BINARY_DIR}/*.gcda")
        if(NOT records)
            message(FATAL_ERROR "KESTRAN_PROFILE=use: nothing has been recorded in this folder yet")
        endif()
        # Most tools never ran, and what never ran is built as ever. Inlined as far as that, the
        # list of captures looks to GCC as if it were read before it is filled.
        add_compile_options(-fprofile-use -fprofile-partial-training -Wno-missing-profile
                            -Wno-maybe-uninitialized)
    else()
        message(FATAL_ERROR "KESTRAN_PROFILE is record or use")
    endif()
endif()
if(KESTRAN_WERROR)
    add_compile_options(-Werror)
endif()
if(NOT KESTRAN_ARCH STREQUAL "portable")
    include(CheckCXXCompilerFlag)
    check_cxx_compiler_flag("-march=${KESTRAN_ARCH}" KESTRAN_KNOWS_${KESTRAN_ARCH})
    if(KESTRAN_KNOWS_${KESTRAN_ARCH})
        add_compile_options("-march=${KESTRAN_ARCH}")
    elseif(NOT KESTRAN_ARCH STREQUAL "native")
        message(FATAL_ERROR "the compiler does not know the processor ${KESTRAN_ARCH}")
    endif()
endif()
if(KESTRAN_HIDE_PATHS)
    add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.")
endif()
if(KESTRAN_LOG)
    add_compile_definitions(KESTRAN_LOG)
endif()
if(KESTRAN_CHECK_POSITIONS)
    add_compile_definitions(KESTRAN_CHECK_POSITIONS)
endif()
# The builds that look for faults check every index, their own and the library's.
if(KESTRAN_CHECK_POSITIONS OR KESTRAN_SANITIZE)
    add_compile_definitions(_GLIBCXX_ASSERTIONS KESTRAN_CHECK_INDICES)
endif()
if(KESTRAN_SANITIZE)
    add_compile_options(-fsanitize=${KESTRAN_SANITIZE} -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${KESTRAN_SANITIZE})
    # GCC takes its own instrumentation of std::regex for a read of unset memory.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-Wno-maybe-uninitialized)
    endif()
endif()
if(KESTRAN_COVERAGE)
    # The counters lie where a program that is killed leaves them behind.
    add_compile_options(-fprofile-instr-generate -fcoverage-mapping
                        "SHELL:-mllvm -runtime-counter-relocation")
    add_link_options(-fprofile-instr-generate)
elseif(KESTRAN_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
    add_link_options(-fsanitize=fuzzer-no-link)
endif()

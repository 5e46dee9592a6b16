# All build options, for example
#
#   cmake -S . -B build -DKESTRAN_LOG=ON
#
# CMakePresets.json has the usual combinations.

# Default to Release.
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Debug, Release, RelWithDebInfo" FORCE)
endif()

option(KESTRAN_TOOLS "Build the tools; needs CLI11 and nlohmann-json" ON)
option(KESTRAN_TESTS "Build the tests; needs GoogleTest" OFF)
option(KESTRAN_BENCHMARKS "Build the benchmarks; needs Google Benchmark" OFF)
option(KESTRAN_LOG "Write the log to standard error; for debugging, not for play" OFF)
option(KESTRAN_CHECK_POSITIONS "Check the whole position after every move; slow" OFF)
option(KESTRAN_WERROR "Treat warnings as errors" OFF)
option(KESTRAN_FUZZ "Build the fuzz targets; needs Clang" OFF)
option(KESTRAN_COVERAGE "Measure test coverage; needs Clang" OFF)
option(KESTRAN_DEBIAN "Install as Debian does: programs to games/; see Package.cmake" OFF)
set(KESTRAN_ARCHIVE "" CACHE STRING "Name of the archive that cpack makes; see Package.cmake")
option(KESTRAN_HIDE_PATHS "Keep the source path out of the programs, for releases" OFF)
# portable: the compiler's default, such as every 64-bit x86; x86-64-v3: most x86 processors since
# 2013; native: the build host, if the compiler supports it.
set(KESTRAN_ARCH "portable" CACHE STRING "Target processor: portable, x86-64-v3, native")
set_property(CACHE KESTRAN_ARCH PROPERTY STRINGS portable x86-64-v3 native)
# Profile-guided optimisation takes two builds in one folder, see docs/speed.md. GCC only.
set(KESTRAN_PROFILE "" CACHE STRING "Profile-guided optimisation: record a profile, or use it")
set_property(CACHE KESTRAN_PROFILE PROPERTY STRINGS "" record use)
set(KESTRAN_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined")

# Flags for every target.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion)
# Drops unused functions from each executable, such as the observed search from the engine.
add_compile_options(-ffunction-sections -fdata-sections)
add_link_options(-Wl,--gc-sections)
if(EMSCRIPTEN)
    add_compile_options(-msimd128 -msign-ext -mbulk-memory -fwasm-exceptions -flto)
    add_link_options(-fwasm-exceptions -flto -O3)
endif()
# Non-PIE code saves one instruction per table access. Set CMAKE_POSITION_INDEPENDENT_CODE=ON for
# ASLR, as distributions do.
if(NOT CMAKE_POSITION_INDEPENDENT_CODE AND NOT KESTRAN_SANITIZE AND NOT EMSCRIPTEN)
    add_compile_options(-fno-pie)
    add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-no-pie>)
endif()
# On 32-bit targets, GCC falsely reports uninitialised reads of inlined lists and overlapping
# appends to strings.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    add_compile_options(-Wno-maybe-uninitialized -Wno-restrict)
endif()
if(KESTRAN_PROFILE)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        message(FATAL_ERROR "KESTRAN_PROFILE needs GCC")
    elseif(KESTRAN_PROFILE STREQUAL "record")
        # Profiles of an earlier build belong to other code.
        file(GLOB_RECURSE oldRecords "${CMAKE_BINARY_DIR}/*.gcda")
        if(oldRecords)
            file(REMOVE ${oldRecords})
        endif()
        add_compile_options(-fprofile-generate)
        add_link_options(-fprofile-generate)
    elseif(KESTRAN_PROFILE STREQUAL "use")
        file(GLOB_RECURSE records "${CMAKE_BINARY_DIR}/*.gcda")
        if(NOT records)
            message(FATAL_ERROR "KESTRAN_PROFILE=use: no profile has been recorded in this folder")
        endif()
        # Code that never ran while recording, such as most tools, is optimised as usual. With this
        # much inlining GCC falsely reports an uninitialised read of the list of captures.
        add_compile_options(-fprofile-use -fprofile-partial-training -Wno-missing-profile
                            -Wno-maybe-uninitialized)
    else()
        message(FATAL_ERROR "KESTRAN_PROFILE must be record or use")
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
        message(FATAL_ERROR "the compiler does not support the processor ${KESTRAN_ARCH}")
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
# Checking builds verify every index, of Indexed and of the standard library.
if(KESTRAN_CHECK_POSITIONS OR KESTRAN_SANITIZE)
    add_compile_definitions(_GLIBCXX_ASSERTIONS KESTRAN_CHECK_INDICES)
endif()
if(KESTRAN_SANITIZE)
    add_compile_options(-fsanitize=${KESTRAN_SANITIZE} -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${KESTRAN_SANITIZE})
    # GCC falsely reports an uninitialised read in its instrumentation of std::regex.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-Wno-maybe-uninitialized)
    endif()
endif()
if(KESTRAN_COVERAGE)
    # Keeps the counters in a file mapping, so that they survive a program that is killed.
    add_compile_options(-fprofile-instr-generate -fcoverage-mapping
                        "SHELL:-mllvm -runtime-counter-relocation")
    add_link_options(-fprofile-instr-generate)
elseif(KESTRAN_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
    add_link_options(-fsanitize=fuzzer-no-link)
endif()

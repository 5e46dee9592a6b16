# Each folder of src/ and of tools/ is a layer: a library of all its files. A file may include
# headers of its own layer, of the layers listed after BELOW, and of those below them. Include
# circles are errors. Each build checks this, see CheckLayers.cmake.
#
# Sources that end in Posix.cpp or Windows.cpp are built only for that system.

set_property(GLOBAL PROPERTY KESTRAN_LAYERS "")

# kestran_layer(NAME ROOT folder BELOW layer...)
# Adds a library of the files in ROOT/NAME: kestran_NAME, or NAME-lib if NAME starts with
# "kestran-". ROOT is the include folder. Files that end in Main.cpp belong to the program and are
# left out.
function(kestran_layer name)
    cmake_parse_arguments(LAYER "" "ROOT" "BELOW" ${ARGN})
    set(root "${CMAKE_SOURCE_DIR}/${LAYER_ROOT}")
    file(GLOB files CONFIGURE_DEPENDS "${root}/${name}/*.h" "${root}/${name}/*.cpp")
    if(WIN32)
        list(FILTER files EXCLUDE REGEX "Posix\\.cpp$")
    else()
        list(FILTER files EXCLUDE REGEX "Windows\\.cpp$")
    endif()
    set(programs ${files})
    list(FILTER programs INCLUDE REGEX "Main\\.cpp$")
    list(FILTER files EXCLUDE REGEX "Main\\.cpp$")

    set(target "kestran_${name}")
    if(name MATCHES "^kestran-")
        set(target "${name}-lib")
    endif()
    add_library(${target} STATIC ${files})
    target_include_directories(${target} PUBLIC "${root}")
    set(known ${name})
    foreach(layer IN LISTS LAYER_BELOW)
        get_property(below GLOBAL PROPERTY KESTRAN_KNOWN_${layer})
        get_property(library GLOBAL PROPERTY KESTRAN_TARGET_${layer})
        list(APPEND known ${below})
        target_link_libraries(${target} PUBLIC ${library})
    endforeach()
    list(REMOVE_DUPLICATES known)
    target_link_libraries(${target} PUBLIC Threads::Threads)
    set_property(GLOBAL PROPERTY KESTRAN_TARGET_${name} ${target})
    set_property(GLOBAL PROPERTY KESTRAN_KNOWN_${name} ${known})
    set_property(GLOBAL PROPERTY KESTRAN_FILES_${name} ${files} ${programs})
    set_property(GLOBAL PROPERTY KESTRAN_ROOT_${name} ${LAYER_ROOT})
    set_property(GLOBAL APPEND PROPERTY KESTRAN_LAYERS ${name})
endfunction()

# Adds the target that checks the includes of all layers whenever a file has changed.
function(kestran_check_layers)
    get_property(layers GLOBAL PROPERTY KESTRAN_LAYERS)
    set(plan "set(layers \"${layers}\")\n")
    set(allFiles "")
    foreach(layer IN LISTS layers)
        get_property(known GLOBAL PROPERTY KESTRAN_KNOWN_${layer})
        get_property(files GLOBAL PROPERTY KESTRAN_FILES_${layer})
        get_property(root GLOBAL PROPERTY KESTRAN_ROOT_${layer})
        string(APPEND plan "set(known_${layer} \"${known}\")\n"
                           "set(root_${layer} ${root})\n"
                           "set(files_${layer} \"${files}\")\n")
        list(APPEND allFiles ${files})
    endforeach()
    file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/layers.cmake" CONTENT "${plan}" @ONLY)

    set(stamp "${CMAKE_BINARY_DIR}/layers.stamp")
    add_custom_command(
        OUTPUT "${stamp}"
        COMMAND "${CMAKE_COMMAND}" -D "PLAN=${CMAKE_BINARY_DIR}/layers.cmake"
                -D "ROOT=${CMAKE_SOURCE_DIR}"
                -P "${CMAKE_SOURCE_DIR}/cmake/CheckLayers.cmake"
        COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
        DEPENDS ${allFiles} "${CMAKE_SOURCE_DIR}/cmake/CheckLayers.cmake"
                "${CMAKE_BINARY_DIR}/layers.cmake"
        COMMENT "Checking that the layers point one way")
    add_custom_target(check-layers ALL DEPENDS "${stamp}")
endfunction()

# Libraries of the core as layers. The source folders follow the subjects, so a folder
# can hold files of two layers; what keeps the layers apart is the check below, which
# fails the build when a file includes a header of a layer that it may not know.

set_property(GLOBAL PROPERTY KESTRAN_LAYERS "")

# kestran_layer(NAME SOURCES module... DEPENDS layer...)
# A module is a path below src/ without its ending.
function(kestran_layer name)
    cmake_parse_arguments(LAYER "" "" "SOURCES;DEPENDS" ${ARGN})
    set(files "")
    foreach(module IN LISTS LAYER_SOURCES)
        foreach(file "src/${module}.h" "src/${module}.cpp")
            if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${file}")
                list(APPEND files "${file}")
            endif()
        endforeach()
    endforeach()
    add_library(${name} STATIC ${files})
    target_include_directories(${name} PUBLIC src)
    target_link_libraries(${name} PUBLIC ${LAYER_DEPENDS} Threads::Threads)

    # The layer and all that it may know, from the bottom up.
    set(known ${name})
    foreach(layer IN LISTS LAYER_DEPENDS)
        get_property(below GLOBAL PROPERTY KESTRAN_KNOWN_${layer})
        list(APPEND known ${below})
    endforeach()
    set_property(GLOBAL PROPERTY KESTRAN_KNOWN_${name} ${known})
    set_property(GLOBAL PROPERTY KESTRAN_FILES_${name} ${files})
    set_property(GLOBAL APPEND PROPERTY KESTRAN_LAYERS ${name})
endfunction()

# Checks the includes of every layer's files whenever one of them has changed.
function(kestran_check_layers)
    get_property(layers GLOBAL PROPERTY KESTRAN_LAYERS)
    set(plan "")
    set(allFiles "")
    foreach(layer IN LISTS layers)
        get_property(known GLOBAL PROPERTY KESTRAN_KNOWN_${layer})
        get_property(files GLOBAL PROPERTY KESTRAN_FILES_${layer})
        string(APPEND plan "list(APPEND layers ${layer})\n"
                           "set(known_${layer} ${known})\n"
                           "set(files_${layer} ${files})\n")
        list(APPEND allFiles ${files})
    endforeach()
    file(WRITE "${CMAKE_BINARY_DIR}/layers.cmake" "${plan}")

    set(stamp "${CMAKE_BINARY_DIR}/layers.stamp")
    add_custom_command(
        OUTPUT "${stamp}"
        COMMAND "${CMAKE_COMMAND}" -D "PLAN=${CMAKE_BINARY_DIR}/layers.cmake"
                -D "ROOT=${CMAKE_CURRENT_SOURCE_DIR}"
                -P "${CMAKE_CURRENT_SOURCE_DIR}/cmake/CheckLayers.cmake"
        COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
        DEPENDS ${allFiles} cmake/CheckLayers.cmake
        COMMENT "Checking that the layers point one way")
    add_custom_target(check-layers ALL DEPENDS "${stamp}")
endfunction()

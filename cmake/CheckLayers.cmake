cmake_minimum_required(VERSION 3.25)

# Run by the build (see Layers.cmake): every header of the core that a file includes
# must belong to the file's own layer or to one below it.
include("${PLAN}")

foreach(layer IN LISTS layers)
    foreach(file IN LISTS files_${layer})
        set(layerOf_${file} ${layer})
    endforeach()
endforeach()

foreach(layer IN LISTS layers)
    foreach(file IN LISTS files_${layer})
        file(STRINGS "${ROOT}/${file}" includes REGEX "^#include \"")
        foreach(line IN LISTS includes)
            string(REGEX REPLACE "^#include \"(.*)\".*" "src/\\1" header "${line}")
            if(NOT DEFINED layerOf_${header})
                message(FATAL_ERROR "${file}: ${header} belongs to no layer")
            endif()
            if(NOT layerOf_${header} IN_LIST known_${layer})
                message(FATAL_ERROR "${file} of ${layer} may not include ${header} of "
                                    "${layerOf_${header}}")
            endif()
        endforeach()
    endforeach()
endforeach()

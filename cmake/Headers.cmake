# kestran_headers(TARGET HEADER PACKAGE)
# The header-only library from Debian's PACKAGE that contains HEADER. The compiler sees its folder
# by a link, without the other headers beside it, so that builds for other machines use it too.
function(kestran_headers target header package)
    find_path(KESTRAN_${target} "${header}" PATHS /usr/include /usr/local/include
        NO_CMAKE_FIND_ROOT_PATH)
    if(NOT KESTRAN_${target})
        message(FATAL_ERROR "This build needs <${header}>: install Debian's ${package}, or build "
                            "kestran alone with -DKESTRAN_TOOLS=OFF.")
    endif()
    cmake_path(GET header PARENT_PATH folder)
    set(links "${CMAKE_BINARY_DIR}/headers/${target}")
    file(MAKE_DIRECTORY "${links}")
    file(CREATE_LINK "${KESTRAN_${target}}/${folder}" "${links}/${folder}" SYMBOLIC)
    add_library(${target} INTERFACE)
    target_include_directories(${target} SYSTEM INTERFACE "${links}")
endfunction()

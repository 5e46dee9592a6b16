# Where `cmake --install` puts programs, man pages, documents, and the files that chess programs and
# desktops look for.

include(GNUInstallDirs)

set(programs "${CMAKE_INSTALL_BINDIR}")
if(KESTRAN_DEBIAN)
    set(programs games)
endif()
get_property(tools GLOBAL PROPERTY KESTRAN_TOOLS)
get_property(consoles GLOBAL PROPERTY KESTRAN_CONSOLES)
install(TARGETS kestran ${tools} ${consoles} RUNTIME DESTINATION "${programs}")

file(GLOB documents CONFIGURE_DEPENDS docs/*.md docs/*.png docs/*.svg docs/*.yml)
# The README names the folder of the programs, which is only known at installation.
install(CODE "
    set(PROGRAMS \"\${CMAKE_INSTALL_PREFIX}/${programs}\")
    if(NOT \"${KESTRAN_ARCHIVE}\" STREQUAL \"\")
        set(PROGRAMS \"this folder\")
    endif()
    if(EXISTS \"${KESTRAN_PAGE}\")
        set(PAGE \"\\n\\nOpen kestran.html, beside this file, in a browser: play there, and watch the search.\")
    endif()
    set(VERSION ${PROJECT_VERSION})
    configure_file(\"${CMAKE_SOURCE_DIR}/packaging/README.in\"
                   \"${CMAKE_BINARY_DIR}/installed/README.md\" @ONLY)")
install(FILES "${CMAKE_BINARY_DIR}/installed/README.md" CHANGELOG.md packaging/copyright
        DESTINATION "${CMAKE_INSTALL_DOCDIR}")
if(NOT KESTRAN_DEBIAN) # whose policy wants no licence beside the copyright file
    install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}")
endif()
install(FILES ${documents} DESTINATION "${CMAKE_INSTALL_DOCDIR}/docs")
if(EXISTS "${KESTRAN_PAGE}")
    install(FILES "${KESTRAN_PAGE}" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
endif()
if(KESTRAN_ARCHIVE)
    include(Package)
    install(FILES desktop/kestran.png desktop/kestran.svg DESTINATION .)
endif()
if(WIN32)
    return() # no man pages, and no common place for chess programs to find engines
endif()

include(ManPages)
if(KESTRAN_ARCHIVE)
    return()
endif()

# XBoard and others look here for engines. Each file holds the full path of its engine, which is only
# known at installation.
set(plugins "${CMAKE_INSTALL_DATADIR}/games/plugins")
set(engines kestran)
if(KESTRAN_TOOLS)
    list(APPEND engines kestran-modern)
endif()
foreach(engine IN LISTS engines)
    install(CODE "
        set(ENGINE \"\${CMAKE_INSTALL_PREFIX}/${programs}/${engine}\")
        configure_file(\"${CMAKE_SOURCE_DIR}/desktop/kestran.eng.in\"
                       \"${CMAKE_BINARY_DIR}/${engine}.eng\" @ONLY)")
    install(FILES "${CMAKE_BINARY_DIR}/${engine}.eng" DESTINATION "${plugins}/uci")
endforeach()
install(FILES desktop/kestran.png DESTINATION "${plugins}/logos")
install(FILES desktop/kestran.svg
        DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")

configure_file(desktop/kestran.metainfo.xml.in org.kestran.kestran.metainfo.xml @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/org.kestran.kestran.metainfo.xml"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")

if(KESTRAN_DEBIAN)
    include(Package)
endif()

# Installs programs, man pages and documents in the GNU directories, and the files by which chess
# programs and desktops find the engines.

include(GNUInstallDirs)

set(programs "${CMAKE_INSTALL_BINDIR}")
if(KESTRAN_DEBIAN)
    set(programs games)
endif()
get_property(tools GLOBAL PROPERTY KESTRAN_TOOLS)
get_property(consoles GLOBAL PROPERTY KESTRAN_CONSOLES)
install(TARGETS kestran ${tools} ${consoles} RUNTIME DESTINATION "${programs}")

file(GLOB documents CONFIGURE_DEPENDS docs/*.md docs/*.png docs/*.svg)
install(FILES README.md CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DOCDIR}")
if(NOT KESTRAN_DEBIAN) # its copyright file has the license
    install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}")
endif()
install(FILES ${documents} DESTINATION "${CMAKE_INSTALL_DOCDIR}/docs")
if(WIN32)
    return() # no man pages; chess programs on Windows ask for the path of an engine
endif()

foreach(program IN ITEMS kestran ${tools})
    install(FILES docs/man/${program}.6 DESTINATION "${CMAKE_INSTALL_MANDIR}/man6")
endforeach()

# XBoard and others look for engines here. Each file contains the absolute path of its engine, which
# is known only at install time.
set(plugins "${CMAKE_INSTALL_DATADIR}/games/plugins")
foreach(engine IN ITEMS kestran kestran-tester)
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

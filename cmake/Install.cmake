# What `cmake --install` puts where: programs, man pages and documents into the GNU directories, and
# beside them what chess programs and desktops look for.

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
if(NOT KESTRAN_DEBIAN) # whose file of copyrights tells it
    install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}")
endif()
install(FILES ${documents} DESTINATION "${CMAKE_INSTALL_DOCDIR}/docs")
if(WIN32)
    return() # it has no man pages, and its chess programs ask for the path of an engine
endif()

foreach(program IN ITEMS kestran ${tools})
    install(FILES docs/man/${program}.6 DESTINATION "${CMAKE_INSTALL_MANDIR}/man6")
endforeach()

# XBoard looks here for engines, and so do others. Each file names its engine by the whole path,
# which is known when it is installed.
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

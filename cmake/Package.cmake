# Packages, made by CPack:
#
#   cmake --preset debian && cmake --build --preset debian && cpack --preset debian
#
# and the same with the presets of archives, such as linux-x86-64.

set(CPACK_PACKAGE_NAME kestran)
set(CPACK_PACKAGE_CONTACT "The Kestran authors <authors@kestran.invalid>")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

if(KESTRAN_ARCHIVE)
    set(CPACK_GENERATOR External)
    set(CPACK_PACKAGE_FILE_NAME "kestran-${PROJECT_VERSION}-${KESTRAN_ARCHIVE}")
    set(CPACK_EXTERNAL_ENABLE_STAGING ON)
    set(CPACK_EXTERNAL_PACKAGE_SCRIPT "${CMAKE_SOURCE_DIR}/cmake/PackArchive.cmake")
    include(CPack)
    return()
endif()

foreach(tool IN ITEMS file dpkg-shlibdeps help2man)
    find_program(KESTRAN_${tool} ${tool})
    if(NOT KESTRAN_${tool})
        message(FATAL_ERROR "The Debian package needs ${tool}: "
                            "apt-get install file dpkg-dev help2man")
    endif()
endforeach()
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "chess engine for chess programs (UCI)")
set(CPACK_PACKAGE_DESCRIPTION
    "Kestran is a chess engine with two front ends: kestran-modern for current
chess programs, and kestran, whose protocol never changes. Both play the
same search, alone or in XBoard, Scid, PyChess and other UCI programs.
.
kestran-play is a game in the terminal. Other tools explain why the engine
does not play a line (kestran-explain), show its opening book (kestran-book),
measure its speed (kestran-bench), count move sequences (kestran-perft) and
play checked games between engines (kestran-soak).")
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "xboard | scid | pychess")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${CMAKE_SOURCE_DIR}/packaging/debian/postinst")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_SET_DESTDIR ON) # packs absolute paths below /usr

# Debian's changelog; texts are compressed as its policy demands.
execute_process(COMMAND date --rfc-email --utc --date "${KESTRAN_DATE}"
                OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
configure_file(packaging/debian/changelog.in changelog @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/changelog" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
install(CODE "
    set(root \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\")
    file(GLOB texts \"\${root}/${CMAKE_INSTALL_MANDIR}/man6/*.6\")
    execute_process(COMMAND gzip -9nf \"\${root}/${CMAKE_INSTALL_DOCDIR}/changelog\" \${texts}
                    COMMAND_ERROR_IS_FATAL ANY)")

include(CPack)

# The Debian package, made by CPack:
#
#   cmake --preset debian && cmake --build --preset debian && cpack --preset debian

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kestran)
set(CPACK_PACKAGE_CONTACT "The Kestran authors <authors@kestran.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "chess engine for chess programs (UCI)")
set(CPACK_PACKAGE_DESCRIPTION
    "Kestran is a chess engine without a board of its own: a chess program such as
XBoard, Scid or PyChess starts it, sends it the game and asks for moves. It
plays openings from a built-in book and searches for its other moves.
.
A second engine, kestran-tester, has the same search and the full UCI protocol
that current testing and analysis programs expect.
.
kestran-play plays against it in a terminal. Other tools explain why it does
not play a line (kestran-explain), show its book (kestran-book), measure its
speed (kestran-bench), count move sequences (kestran-perft) and play long
series of checked games (kestran-soak).")
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "xboard | scid | pychess")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${CMAKE_SOURCE_DIR}/packaging/debian/postinst")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}")
set(CPACK_STRIP_FILES ON)
set(CPACK_SET_DESTDIR ON) # keeps the prefix of the target system
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# The files that Debian policy requires, compressed as it requires.
execute_process(COMMAND date --rfc-email --utc --date "${KESTRAN_DATE}"
                OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
configure_file(packaging/debian/changelog.in changelog @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/changelog" packaging/debian/copyright
        DESTINATION "${CMAKE_INSTALL_DOCDIR}")
install(CODE "
    set(root \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\")
    file(GLOB texts \"\${root}/${CMAKE_INSTALL_MANDIR}/man6/*.6\")
    execute_process(COMMAND gzip -9nf \"\${root}/${CMAKE_INSTALL_DOCDIR}/changelog\" \${texts}
                    COMMAND_ERROR_IS_FATAL ANY)")

include(CPack)

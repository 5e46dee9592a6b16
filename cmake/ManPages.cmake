# Builds the man pages, in man/ of the build folder. If docs/man/PROGRAM.h2m exists, help2man makes
# the page of the program from that file, the program's --help and a list of the other pages.
# Otherwise the page is docs/man/PROGRAM.6. Programs for another machine run in its emulator.

find_program(KESTRAN_HELP2MAN help2man)
set(man_folder "${CMAKE_BINARY_DIR}/man")
set(man_pages "")
set(generated_pages "")
foreach(program IN ITEMS kestran ${tools})
    set(source "${CMAKE_SOURCE_DIR}/docs/man/${program}")
    set(page "${man_folder}/${program}.6")
    if(NOT EXISTS "${source}.h2m")
        configure_file("${source}.6" "${page}" COPYONLY)
    else()
        set(others kestran ${tools})
        list(REMOVE_ITEM others ${program})
        list(SORT others)
        list(JOIN others " (6),\n.BR " others)
        set(see_also "${man_folder}/${program}.h2m")
        file(CONFIGURE OUTPUT "${see_also}" CONTENT "[SEE ALSO]\n.BR ${others} (6)\n" @ONLY)
        # The date is that of the version, in the form that mandoc asks for.
        add_custom_command(
            OUTPUT "${page}"
            COMMAND "${KESTRAN_HELP2MAN}" --section=6 --no-info --manual=Kestran
                    "--include=${source}.h2m" "--include=${see_also}" "--output=${page}"
                    "$<JOIN:${CMAKE_CROSSCOMPILING_EMULATOR};$<TARGET_FILE:${program}>, >"
            COMMAND sed -i "/^.TH /s/\"[A-Z][a-z]* [0-9]*\"/\"${KESTRAN_DATE}\"/" "${page}"
            DEPENDS ${program} "${source}.h2m" "${see_also}"
            COMMENT "Writing the man page of ${program}"
            VERBATIM)
        list(APPEND generated_pages "${page}")
    endif()
    list(APPEND man_pages "${page}")
endforeach()

if(generated_pages)
    if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
        message(STATUS "Without an emulator, only hand-written man pages are installed")
        list(REMOVE_ITEM man_pages ${generated_pages})
    elseif(NOT KESTRAN_HELP2MAN)
        install(CODE "message(FATAL_ERROR \"The man pages need help2man: apt-get install help2man\")")
    elseif(NOT KESTRAN_SANITIZE AND NOT KESTRAN_FUZZ AND NOT KESTRAN_PROFILE STREQUAL "record")
        add_custom_target(man-pages ALL DEPENDS ${generated_pages})
    endif()
endif()
install(FILES ${man_pages} DESTINATION "${CMAKE_INSTALL_MANDIR}/man6")

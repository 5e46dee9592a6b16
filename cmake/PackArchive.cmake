# Run by CPack: packs the staged files the same way each time, with sorted names, no owner, and the
# time in SOURCE_DATE_EPOCH.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
    message(FATAL_ERROR "Set SOURCE_DATE_EPOCH, as dev/release does.")
endif()
set(staged "${CPACK_TEMPORARY_DIRECTORY}")
cmake_path(GET staged PARENT_PATH folder)
cmake_path(GET staged FILENAME name)
set(package "${CPACK_PACKAGE_DIRECTORY}/${CPACK_PACKAGE_FILE_NAME}")
if(name MATCHES "windows")
    set(command "find '${name}' -exec touch -d @$SOURCE_DATE_EPOCH {} + && rm -f '${package}.zip' &&
                 find '${name}' | sort | zip -q -9 -X -@ '${package}.zip'")
else()
    set(command "tar -c --sort=name --format=ustar --owner=0 --group=0 --numeric-owner \
                 --mtime=@$SOURCE_DATE_EPOCH '${name}' | xz -9 -T1 > '${package}.tar.xz'")
endif()
execute_process(COMMAND sh -euc "${command}" WORKING_DIRECTORY "${folder}"
                COMMAND_ERROR_IS_FATAL ANY)

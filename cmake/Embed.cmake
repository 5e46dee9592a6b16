# Embeds files in a program.

# kestran_embed(TARGET HEADER NAME file [NAME file]...)
# Adds a generated source to the target that defines each NAME as the text of its file. HEADER
# declares NAME as `extern const std::string_view`.
function(kestran_embed target header)
    set(source "#include \"${header}\"\n")
    while(ARGN)
        list(POP_FRONT ARGN name file)
        file(READ "${file}" text)
        string(APPEND source "\nconst std::string_view ${name} = R\"embedded(${text})embedded\";\n")
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
    endwhile()
    # Copied only if it has changed, to avoid rebuilds.
    set(path "${CMAKE_CURRENT_BINARY_DIR}/${target}-embedded")
    file(WRITE "${path}.tmp" "${source}")
    configure_file("${path}.tmp" "${path}.cpp" COPYONLY)
    target_sources(${target} PRIVATE "${path}.cpp")
    set_source_files_properties("${path}.cpp" PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON
        COMPILE_OPTIONS -Wno-overlength-strings)
endfunction()

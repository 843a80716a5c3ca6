# Debug information apart from what is shipped.

# kestrel_part_symbols(TARGET): what is built carries no symbols, so that what is tested is what is shipped. They lie beside
# it under its name with ".debug" added, where debuggers look for them.
function(kestrel_part_symbols target)
    # Without --preserve-dates the time at which this is done would be written into the file.
    set(file $<TARGET_FILE_NAME:${target}>)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_OBJCOPY} --preserve-dates --only-keep-debug ${file} ${file}.debug
        COMMAND ${CMAKE_OBJCOPY} --preserve-dates --strip-all --add-gnu-debuglink=${file}.debug ${file}
        WORKING_DIRECTORY $<TARGET_FILE_DIR:${target}> VERBATIM)
endfunction()

# Resources that are made again whenever a file changes that they are made of, with every generator: Visual Studio does not
# look into the files that a resource script includes or embeds, so what it compiles is a copy of the script, as young as
# the youngest of them.
set(KESTREL_RESOURCES ${CMAKE_SOURCE_DIR}/src/resources)

# kestrel_add_resources(TARGET script.rc [file...]): the script with the built files that it embeds
function(kestrel_add_resources target script)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/resources-${target})
    file(MAKE_DIRECTORY ${folder})
    get_filename_component(name ${script} NAME)
    file(GLOB shared CONFIGURE_DEPENDS
        ${KESTREL_RESOURCES}/*.rc ${KESTREL_RESOURCES}/*.h ${KESTREL_RESOURCES}/*.inc ${KESTREL_RESOURCES}/*.manifest)
    add_custom_command(
        OUTPUT ${folder}/${name}
        COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_SOURCE_DIR}/${script} ${ARGN} ${folder}
        COMMAND ${CMAKE_COMMAND} -E touch ${folder}/${name}
        DEPENDS ${script} ${shared} ${ARGN} VERBATIM)
    target_sources(${target} PRIVATE ${folder}/${name})
    target_include_directories(${target} PRIVATE ${folder} ${KESTREL_RESOURCES})
endfunction()

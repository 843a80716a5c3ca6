# Compiles descriptions of type libraries.
if(NOT MSVC)
    set(KESTREL_WINE_FOLDERS /usr/lib/i386-linux-gnu/wine/i386-windows)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
        set(KESTREL_WINE_FOLDERS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows)
    endif()
    find_program(KESTREL_WIDL ${KESTREL_TRIPLE}-widl REQUIRED)
    find_path(KESTREL_WIDL_INCLUDES oaidl.idl PATHS /usr/include/wine/wine/windows REQUIRED NO_CMAKE_FIND_ROOT_PATH)
    find_path(KESTREL_WIDL_LIBRARIES stdole2.tlb PATHS ${KESTREL_WINE_FOLDERS} REQUIRED NO_CMAKE_FIND_ROOT_PATH)
    find_package(Python3 REQUIRED COMPONENTS Interpreter)
endif()
set(KESTREL_EVENT_FLAGS ${CMAKE_CURRENT_LIST_DIR}/nonextensible_events.py)

# kestrel_add_type_library(description.idl library.tlb header.h): both are made in the folder of the library
function(kestrel_add_type_library idl tlb header)
    get_filename_component(folder ${tlb} DIRECTORY)
    get_filename_component(name ${tlb} NAME_WE)
    file(MAKE_DIRECTORY ${folder})
    if(MSVC)
        set(environment win32)
        if(CMAKE_SIZEOF_VOID_P EQUAL 8)
            set(environment x64)
        endif()
        # By its name alone: the build has the folder of midl in its path, of which the configuration knows nothing. All
        # that it writes, wanted or not, gets a place.
        add_custom_command(
            OUTPUT ${tlb} ${folder}/${header}
            COMMAND midl /nologo /env ${environment} /out ${folder} /tlb ${name}.tlb /h ${header}
                    /iid ${name}_i.c /proxy ${name}_p.c /dlldata ${name}_dlldata.c ${idl}
            DEPENDS ${idl} VERBATIM)
        return()
    endif()
    set(environment --win32)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
        set(environment --win64)
    endif()
    # The same input gives the same bytes, wherever it lies: widl writes the name that it was given into the header.
    file(RELATIVE_PATH description ${CMAKE_SOURCE_DIR} ${idl})
    set(widl ${CMAKE_COMMAND} -E env WIDL_TIME_OVERRIDE=0 ${KESTREL_WIDL} ${environment}
        -I ${KESTREL_WIDL_INCLUDES} -L ${KESTREL_WIDL_LIBRARIES})
    add_custom_command(
        OUTPUT ${tlb} ${folder}/${header}
        COMMAND ${widl} -t -o ${tlb} ${description}
        COMMAND ${Python3_EXECUTABLE} ${KESTREL_EVENT_FLAGS} ${tlb}
        COMMAND ${widl} -h -o ${folder}/${header} ${description}
        DEPENDS ${idl} ${KESTREL_EVENT_FLAGS} WORKING_DIRECTORY ${CMAKE_SOURCE_DIR} VERBATIM)
endfunction()

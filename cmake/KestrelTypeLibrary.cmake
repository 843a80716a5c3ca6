# Compiles the type library's description: kestrel_typelib carries the header and the place of the binary type library.
set(KESTREL_GENERATED ${CMAKE_CURRENT_BINARY_DIR}/generated)
set(KESTREL_IDL ${CMAKE_CURRENT_SOURCE_DIR}/resources/Kestrel.idl)
set(KESTREL_TLB ${KESTREL_GENERATED}/Kestrel.tlb)
set(KESTREL_TYPELIB_HEADER ${KESTREL_GENERATED}/KestrelTypeLib.h)
file(MAKE_DIRECTORY ${KESTREL_GENERATED})

if(MSVC)
    find_program(KESTREL_MIDL midl REQUIRED)
    set(KESTREL_MIDL_TARGET $<IF:$<EQUAL:${CMAKE_SIZEOF_VOID_P},8>,x64,win32>)
    add_custom_command(
        OUTPUT ${KESTREL_TLB} ${KESTREL_TYPELIB_HEADER}
        COMMAND ${KESTREL_MIDL} /nologo /env ${KESTREL_MIDL_TARGET} /tlb ${KESTREL_TLB} /h ${KESTREL_TYPELIB_HEADER}
                /iid ${KESTREL_GENERATED}/KestrelIds.c ${KESTREL_IDL}
        DEPENDS ${KESTREL_IDL} VERBATIM)
else()
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
        set(KESTREL_WINE_FOLDERS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows)
        set(KESTREL_WIDL_TARGET --win64)
    else()
        set(KESTREL_WINE_FOLDERS /usr/lib/i386-linux-gnu/wine/i386-windows)
        set(KESTREL_WIDL_TARGET --win32)
    endif()
    find_program(KESTREL_WIDL ${KESTREL_TRIPLE}-widl REQUIRED)
    find_path(KESTREL_WIDL_INCLUDES oaidl.idl PATHS /usr/include/wine/wine/windows REQUIRED NO_CMAKE_FIND_ROOT_PATH)
    find_path(KESTREL_WIDL_LIBRARIES stdole2.tlb PATHS ${KESTREL_WINE_FOLDERS} REQUIRED NO_CMAKE_FIND_ROOT_PATH)
    # The same input gives the same bytes.
    set(KESTREL_WIDL_COMMAND ${CMAKE_COMMAND} -E env WIDL_TIME_OVERRIDE=0 ${KESTREL_WIDL} ${KESTREL_WIDL_TARGET}
        -I ${KESTREL_WIDL_INCLUDES} -L ${KESTREL_WIDL_LIBRARIES})
    add_custom_command(
        OUTPUT ${KESTREL_TLB} ${KESTREL_TYPELIB_HEADER}
        COMMAND ${KESTREL_WIDL_COMMAND} -t -o ${KESTREL_TLB} ${KESTREL_IDL}
        COMMAND ${KESTREL_WIDL_COMMAND} -h -o ${KESTREL_TYPELIB_HEADER} ${KESTREL_IDL}
        DEPENDS ${KESTREL_IDL} VERBATIM)
endif()

add_custom_target(kestrel_typelib_files DEPENDS ${KESTREL_TLB} ${KESTREL_TYPELIB_HEADER})
add_library(kestrel_typelib INTERFACE)
add_dependencies(kestrel_typelib kestrel_typelib_files)
target_include_directories(kestrel_typelib SYSTEM INTERFACE ${KESTREL_GENERATED})

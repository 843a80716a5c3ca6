# The library compiled as one source that includes all others. The compiler then knows every caller of a function: what
# nobody calls goes, what one place calls moves there, what is alike becomes one, and the tables by which exceptions find
# their way are written once instead of for every source. That takes a quarter off the library, and headers are read once
# instead of a hundred times. So no two sources may use one name for different things of their own (in unnamed namespaces).

# kestrel_build_whole(TARGET): the library of the sources in KESTREL_..._SOURCES
function(kestrel_build_whole target)
    # What takes the place of functions of the standard library must be seen by it, and so stands alone.
    set(replacements ${CMAKE_CURRENT_SOURCE_DIR}/automation/StandardLibrary.cpp)
    set(sources ${KESTREL_MODEL_SOURCES} ${KESTREL_PLATFORM_SOURCES} ${KESTREL_DIALOG_SOURCES} ${KESTREL_AUTOMATION_SOURCES})
    list(REMOVE_ITEM sources ${replacements})
    string(CONCAT text
        "#define _CRT_RAND_S\n" # as common/Draw.cpp wants it, which is not the first to include the header
        "#include <windows.h>\n\n"
        "// What the library exports is called from outside.\n"
        "extern \"C\" {\n"
        "[[gnu::externally_visible]] HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID, REFIID, void**);\n"
        "[[gnu::externally_visible]] HRESULT STDAPICALLTYPE DllCanUnloadNow();\n"
        "[[gnu::externally_visible]] HRESULT STDAPICALLTYPE DllRegisterServer();\n"
        "[[gnu::externally_visible]] HRESULT STDAPICALLTYPE DllUnregisterServer();\n"
        "[[gnu::externally_visible]] HRESULT STDAPICALLTYPE DllInstall(BOOL, LPCWSTR);\n"
        "}\n\n")
    foreach(source ${sources})
        file(RELATIVE_PATH source ${CMAKE_CURRENT_SOURCE_DIR} ${source})
        string(APPEND text "#include \"${source}\"\n")
    endforeach()
    set(whole ${KESTREL_GENERATED}/Kestrel.cpp)
    file(CONFIGURE OUTPUT ${whole} CONTENT "${text}" @ONLY)
    # Small functions move to their callers although that adds a little: it makes the issuing of codes a tenth quicker than
    # without, for 13 KB. The two warnings compare sources with each other; tools/check-tidy.sh reads them with both.
    set_source_files_properties(${whole} PROPERTIES COMPILE_OPTIONS
        "-g;-fwhole-program;--param=max-inline-insns-size=5;-Wno-shadow;-Wno-subobject-linkage")
    target_sources(${target} PRIVATE ${whole} ${replacements})
    target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${target} PRIVATE kestrel_options kestrel_typelib oleaut32 ole32 uuid comctl32 gdi32 user32)
endfunction()

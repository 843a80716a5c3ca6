# Targets that are compiled several sources at a time: most of a source is the headers that it includes, and these are then
# read once for all of them. So no two sources of a target may use one name for different things of their own (in unnamed
# namespaces), nor say `using namespace` of the project's. Visual C++ compiles each by itself, and tools/check-windows.sh
# reads the component's so: each must include what it uses.

# kestrel_unite(TARGET [AT_A_TIME number]): so many sources make a piece, 0 for all of them. The fewer pieces the less there is
# to do, the more there are the less a change compiles again.
function(kestrel_unite target)
    cmake_parse_arguments(ARG "" "AT_A_TIME" "" ${ARGN})
    if(NOT DEFINED ARG_AT_A_TIME)
        set(ARG_AT_A_TIME 16)
    endif()
    if(MSVC)
        return()
    endif()
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${ARG_AT_A_TIME})
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        # A class of a source may hold one of that source's unnamed namespace, which the compiler takes for a header's.
        set_property(TARGET ${target} APPEND PROPERTY COMPILE_OPTIONS -Wno-subobject-linkage)
    endif()
endfunction()

# Libraries that are compiled several sources at a time: most of a source is the headers that it includes, and these are
# then read once for all of them. So no two sources of a library may use one name for different things of their own (in
# unnamed namespaces). tools/check-tidy.sh reads each source by itself, so that each includes what it uses.
option(KESTREL_UNITE "Compile several sources at a time" ON)

# kestrel_unite(TARGET...)
function(kestrel_unite)
    if(KESTREL_UNITE)
        set_target_properties(${ARGN} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 16)
        if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
            # A class of a source may hold one of that source's unnamed namespace, which the compiler takes for a header's.
            set_property(TARGET ${ARGN} APPEND PROPERTY COMPILE_OPTIONS -Wno-subobject-linkage)
        endif()
    endif()
endfunction()

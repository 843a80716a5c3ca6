# GoogleTest from the system's own sources, and one ctest entry per test source: the test suites in a source are named
# after it, so Xyz.cpp holds the suites that begin with Xyz. One more entry per program fails when a suite is named
# otherwise, because no entry would run it.

# What a test takes of the number after ctest's -j, which counts half processors: one processor, unless it mostly waits and
# so takes half of one (1), or wants two for itself.
set(KESTREL_ONE_PROCESSOR 2)
set(KESTREL_TWO_PROCESSORS 4)

# What the tests themselves are compiled to need not be quick: the optimizer would take two thirds of the compiler's time, and
# what describes lines to a debugger as long again in the linker; sanitizers alone tell lines. What is tested is compiled as
# it is delivered.
function(kestrel_compile_plainly target)
    if(NOT MSVC)
        target_compile_options(${target} PRIVATE -O0)
    endif()
    if(MINGW)
        target_compile_options(${target} PRIVATE -g0)
    endif()
endfunction()

macro(kestrel_add_googletest)
    if(EXISTS /usr/src/googletest/CMakeLists.txt)
        set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
        set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
        add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
        kestrel_compile_plainly(gtest)
    else()
        # Where the system brings no sources, an installed GoogleTest serves (GTest_DIR says where).
        find_package(GTest CONFIG REQUIRED)
        add_library(gtest ALIAS GTest::gtest)
    endif()
endmacro()

# kestrel_add_tests(TARGET FOLDER folder LIBRARIES library...)
function(kestrel_add_tests target)
    cmake_parse_arguments(ARG "" "FOLDER" "LIBRARIES" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${ARG_FOLDER}/*.cpp)
    add_executable(${target} ${CMAKE_SOURCE_DIR}/tests/support/Main.cpp ${sources})
    # In small pieces: whoever changes a test compiles a piece again, and two processors share what there is.
    kestrel_unite(${target} AT_A_TIME 8)
    kestrel_compile_plainly(${target})
    target_link_libraries(${target} PRIVATE gtest kestrel_options ${ARG_LIBRARIES})
    target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    set(others -)
    foreach(source ${sources})
        get_filename_component(suite ${source} NAME_WE)
        string(APPEND others ${suite}*:)
        add_test(NAME ${ARG_FOLDER}.${suite} COMMAND ${target} --gtest_filter=${suite}* --gtest_brief=1)
        set_tests_properties(${ARG_FOLDER}.${suite} PROPERTIES PROCESSORS ${KESTREL_ONE_PROCESSOR})
    endforeach()
    add_test(NAME ${ARG_FOLDER}.NoOtherSuites COMMAND ${target} --gtest_filter=${others} --gtest_list_tests)
    set_tests_properties(${ARG_FOLDER}.NoOtherSuites PROPERTIES PASS_REGULAR_EXPRESSION "no test matches")
endfunction()

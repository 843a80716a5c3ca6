# Tests that drive Windows programs from outside; the component must be registered in the prefix that they run in.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

# kestrel_program_test(FILE [CASES]): the test cases named in FILE_test.py, or all of them, with the programs of this
# build. The test is named after the folder and the file.
function(kestrel_program_test file)
    get_filename_component(folder ${CMAKE_CURRENT_SOURCE_DIR} NAME)
    string(JOIN "." name ${folder} ${file} ${ARGN})
    add_test(NAME ${name}
        COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/${file}_test.py ${ARGN})
    # Until ctest has measured how long they take they begin before the tests that take no more than a moment.
    set_tests_properties(${name} PROPERTIES PROCESSORS ${KESTREL_ONE_PROCESSOR} COST 10
        ENVIRONMENT "KESTREL_BUILD=${CMAKE_BINARY_DIR};KESTREL_LAUNCHER=${CMAKE_CROSSCOMPILING_EMULATOR};PYTHONDONTWRITEBYTECODE=1;PYTHONPATH=${CMAKE_SOURCE_DIR}/tests/support:${CMAKE_SOURCE_DIR}/tests/ledger")
endfunction()

# Runs one script and judges it by its exit code and what it prints. An engine can end a script without a word and with
# exit code 0, so a script that checks things ends by saying how many it has checked.
#
# cmake -DLAUNCHER=... -DPROGRAM=... -DARGUMENTS=a;b [-DEXIT=n] [-DINPUT=file] [-DOUT=file] [-DERR=file] -DLOG=path -P RunScript.cmake
#   LAUNCHER  runs PROGRAM where this system cannot, may be empty
#   EXIT      the exit code, 0 when left out
#   INPUT     a file for the script to read as its standard input
#   OUT       a file with all that is printed; left out, the last line printed must tell of checks, none of them failed
#   ERR       a file with all that is reported on standard error; left out, nothing may be reported
#   LOG       where to keep what was printed: a file, not a pipe, because a Wine server started by the run would keep the
#             pipe open as long as it lives

function(read_lines file variable)
    file(READ ${file} text)
    string(REPLACE "\r\n" "\n" text "${text}")
    set(${variable} "${text}" PARENT_SCOPE)
endfunction()

function(refuse reason)
    message(FATAL_ERROR "${reason}\n-- exit code: ${status}\n-- printed:\n${printed}\n-- reported:\n${reported}")
endfunction()

function(compare actual file what)
    read_lines(${file} expected)
    if(NOT "${actual}" STREQUAL "${expected}")
        refuse("what was ${what} is not the text of ${file}:\n${expected}")
    endif()
endfunction()

set(input)
if(INPUT)
    set(input INPUT_FILE ${INPUT})
endif()
execute_process(
    COMMAND ${LAUNCHER} ${PROGRAM} ${ARGUMENTS} ${input}
    RESULT_VARIABLE status OUTPUT_FILE ${LOG}.out ERROR_FILE ${LOG}.err)
read_lines(${LOG}.out printed)
read_lines(${LOG}.err reported)

if(NOT DEFINED EXIT)
    set(EXIT 0)
endif()
if(NOT status EQUAL EXIT)
    refuse("the exit code is not ${EXIT}")
endif()
if(OUT)
    compare("${printed}" ${OUT} printed)
elseif(NOT printed MATCHES "end of script: [1-9][0-9]* checks, 0 failed\n$")
    refuse("the script did not come to its end")
endif()
if(ERR)
    compare("${reported}" ${ERR} reported)
elseif(NOT reported STREQUAL "")
    refuse("something was reported")
endif()

# What every target of the project is compiled with.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
# The generator expression keeps Visual Studio from adding a folder per configuration.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY $<1:${CMAKE_BINARY_DIR}>)
# Visual C++: the run-time library is linked in, so that a DLL needs nothing but Windows.
set(CMAKE_MSVC_RUNTIME_LIBRARY MultiThreaded$<$<CONFIG:Debug>:Debug>)

find_program(KESTREL_CCACHE ccache)
if(KESTREL_CCACHE)
    # What one clone has compiled serves another: paths count from the source folder, whatever that is.
    set(launcher ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${KESTREL_CCACHE})
    set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()

if(MINGW)
    # What a report of a crash names: functions and lines. Describing each variable as well takes the compiler half as long
    # again; the library alone has that (KestrelWhole.cmake), for it runs in programs of others.
    string(REPLACE -g -g1 CMAKE_C_FLAGS_RELWITHDEBINFO "${CMAKE_C_FLAGS_RELWITHDEBINFO}")
    string(REPLACE -g -g1 CMAKE_CXX_FLAGS_RELWITHDEBINFO "${CMAKE_CXX_FLAGS_RELWITHDEBINFO}")
endif()

add_library(kestrel_options INTERFACE)
if(MSVC)
    target_compile_options(kestrel_options INTERFACE /W4 /WX /utf-8 /permissive- /EHsc /Zc:__cplusplus /sdl /guard:cf)
    target_link_options(kestrel_options INTERFACE /guard:cf)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
        # The return addresses of calls are checked by the processor, which 32-bit programs cannot ask for.
        target_link_options(kestrel_options INTERFACE /CETCOMPAT)
    endif()
else()
    target_compile_options(kestrel_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
endif()
if(WIN32)
    target_compile_definitions(kestrel_options INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601)
endif()
if(MINGW)
    # The same sources give the same bytes wherever they lie and whenever they are built. ccache hands the compiler paths
    # that count from the build folder, so those that count from the root are made the same; the last that fits is taken.
    add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}=. -ffile-prefix-map=${CMAKE_BINARY_DIR}/=
        -ffile-prefix-map=../=./build/ -ffile-prefix-map=../../=./)
    add_link_options(-Wl,--no-insert-timestamp)
    target_compile_options(kestrel_options INTERFACE -fstack-protector-strong)
    target_link_options(kestrel_options INTERFACE -static -fstack-protector-strong)
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
        # Doubles behave as in the 64-bit build.
        target_compile_options(kestrel_options INTERFACE -msse2 -mfpmath=sse)
    endif()
endif()
if(KESTREL_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

#!/usr/bin/env bash
# Fails when Visual Studio, which is not here, would likely refuse the component: what can be told of that from afar. The
# build is configured as Visual Studio configures it, with a compiler that takes the same options; that compiler reads every
# source of the component in Visual C++'s dialect, though with the headers of mingw-w64; the resource scripts keep to what
# rc.exe reads, the type library's description to what the strictest reading lets pass.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

WORK="$BUILD/visual-studio"
LLVM=/usr/lib/llvm-14/bin
RESOURCES="$ROOT/src/resources"
TRIPLE=i686-w64-mingw32
HEADERS=/usr/lib/gcc/$TRIPLE/12-posix/include/c++
WIDL_INCLUDES=/usr/include/wine/wine/windows

# --- The configuration ---

# The options that a preset for Visual Studio sets, one "-DNAME=VALUE" a line. The preset itself works on Windows only.
preset_options() {
    python3 - "$ROOT/CMakePresets.json" "$1" <<'PYTHON'
import json
import sys

with open(sys.argv[1], encoding="utf-8") as file:
    presets = json.load(file)["configurePresets"]
preset = next(preset for preset in presets if preset["name"] == sys.argv[2])
for name, value in preset["cacheVariables"].items():
    print(f"-D{name}={value}")
PYTHON
}

# usage: configure PRESET TARGET POINTER_SIZE
configure() {
    local preset="$1" target="$2" pointer="$3" options
    mapfile -t options < <(preset_options "$preset")
    [ "${#options[@]}" -gt 0 ] || fail "CMakePresets.json has no preset $preset"
    rm -rf "${WORK:?}/$preset"
    # Nothing can be linked here, so the trials that CMake makes with a compiler are answered in advance.
    cmake -G Ninja -S "$ROOT" -B "$WORK/$preset" "${options[@]}" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DCMAKE_EXPORT_COMPILE_COMMANDS=ON -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_SIZEOF_VOID_P="$pointer" \
        -DCMAKE_C_COMPILER="$LLVM/clang-cl" -DCMAKE_C_COMPILER_TARGET="$target" -DCMAKE_C_COMPILER_WORKS=1 \
        -DCMAKE_CXX_COMPILER="$LLVM/clang-cl" -DCMAKE_CXX_COMPILER_TARGET="$target" -DCMAKE_CXX_COMPILER_WORKS=1 \
        -DCMAKE_LINKER=link -DCMAKE_MT=mt -DCMAKE_AR=lib -DCMAKE_RC_COMPILER="$LLVM/llvm-rc" \
        >"$WORK/$preset.log" 2>&1 || { tail -n 20 "$WORK/$preset.log" >&2; fail "$preset does not configure"; }
}

# The value of a variable in the build statement of FILE that makes what begins with OUTPUT.
# usage: ninja_variable FILE OUTPUT VARIABLE
ninja_variable() {
    awk -v output="build $2" -v variable="  $3 = " '
        index($0, output) == 1 { inside = 1; next }
        inside && $0 == "" { exit }
        inside && index($0, variable) == 1 { print substr($0, length(variable) + 1) }' "$1"
}

# usage: expect_words WHERE TEXT WORD...
expect_words() {
    local where="$1" text="$2" word
    shift 2
    for word in "$@"; do
        [[ " $text " == *" $word "* ]] || fail "$where: no $word in '$text'"
    done
}

# The resources are made again when any of these changes.
expect_resources_follow() {
    local preset="$1" inputs file
    inputs="$(grep -E '^build src/resources-Kestrel/Kestrel.rc ' "$WORK/$preset/build.ninja" || true)"
    for file in "$RESOURCES"/{Kestrel.rc,texts.rc,dialogs.rc,dialogids.h,strings.inc,Controls.manifest}; do
        expect_words "$preset, resources" "$inputs" "$file"
    done
    expect_words "$preset, resources" "$inputs" src/generated/Kestrel.tlb Kestrel.manifest
    # Visual Studio knows no such thing.
    if grep -rqw OBJECT_DEPENDS "$ROOT"/{CMakeLists.txt,cmake,src,tests,hosts}; then fail "OBJECT_DEPENDS is used"; fi
}

# usage: check_configuration PRESET TARGET POINTER_SIZE MIDL_ENVIRONMENT
check_configuration() {
    local preset="$1" ninja="$WORK/$1/build.ninja" link flags midl
    configure "$1" "$2" "$3"
    if grep -E '^(KESTREL_CLI11|KESTREL_NLOHMANN|GTest_DIR|Python3_EXECUTABLE|_Python3_EXECUTABLE|KESTREL_WIDL)[:=]' \
        "$WORK/$preset/CMakeCache.txt"; then
        fail "$preset looks for what Visual Studio does not bring"
    fi
    flags="$(ninja_variable "$ninja" src/CMakeFiles/Kestrel.dir/automation/Server.cpp.obj FLAGS)"
    expect_words "$preset, compiler" "$flags" /permissive- /W4 /WX /utf-8 /sdl /guard:cf
    link="$(ninja_variable "$ninja" Kestrel.dll LINK_FLAGS)"
    expect_words "$preset, linker" "$link" /MANIFEST:NO /guard:cf
    if [ "$3" = 8 ]; then
        expect_words "$preset, linker" "$link" /CETCOMPAT
    elif [[ "$link" == *CETCOMPAT* ]]; then
        fail "$preset: /CETCOMPAT is for 64-bit programs"
    fi
    midl="$(grep -E 'COMMAND = .* midl ' "$ninja" || true)"
    expect_words "$preset, midl" "$midl" /env "$4" /out "$WORK/$preset/src/generated" /tlb /h /iid /proxy /dlldata
    expect_resources_follow "$preset"
    note "$preset configures"
}

# --- The dialect ---

# mingw-w64's headers want a compiler that says it is another one; the language stays Visual C++'s.
HEADER_OPTIONS=(-U_MSC_VER /clang:-fgnuc-version=12.2.0 -D__STRICT_ANSI__ -D__MINGW32__ -D__MSVCRT__ -D_UCRT -D_X86_
    -imsvc "$BUILD/x86/src/generated" -imsvc "$HEADERS" -imsvc "$HEADERS/$TRIPLE" -imsvc "/usr/$TRIPLE/include")
# Beside /W4 and /WX: what is no standard C++, and what only other compilers have.
STRICTER=(/clang:-Wpedantic /clang:-Wmicrosoft /clang:-Wgnu /clang:-Wvla /clang:-Wc99-extensions)

# Reads one source as the build would compile it. usage: read_source SOURCE OPTION...
read_source() {
    local source="$1" output
    shift
    output="$("$LLVM/clang-cl" "$@" /Zs "${HEADER_OPTIONS[@]}" "${STRICTER[@]}" -- "$source" 2>&1)" || {
        printf '%s\n' "$output"
        return 1
    }
}

# The component's sources with their options, one line each, with NUL instead of blanks, from the compile database.
compile_commands() {
    python3 - "$WORK/msvc-x86/compile_commands.json" <<'PYTHON'
import json
import shlex
import sys

with open(sys.argv[1], encoding="utf-8") as file:
    commands = json.load(file)
for command in commands:
    if not command["file"].endswith(".cpp"):
        continue
    words = shlex.split(command["command"])[1:]
    options = [word for word in words if not word.startswith(("/Fo", "/Fd")) and word not in ("-c", "--", command["file"])]
    print("\t".join([command["file"], *options]))
PYTHON
}

check_dialect() {
    local commands="$WORK/commands" sources missing
    [ -f "$BUILD/x86/src/generated/KestrelTypeLib.h" ] || fail "build/x86 is not built (tools/build.sh x86)"
    compile_commands >"$commands"
    sources="$(wc -l <"$commands")"
    missing="$(find "$ROOT/src" -name '*.cpp' | grep -vxF -f <(cut -f 1 "$commands") || true)"
    [ -z "$missing" ] || fail "not compiled by Visual C++'s presets: $missing"
    xargs -r -d '\n' -n 1 -P "$JOBS" "$ROOT/tools/check-windows.sh" --read <"$commands"
    note "$sources sources are read in Visual C++'s dialect"
}

# Names that headers of other compilers bring, and functions that /sdl refuses.
FOREIGN='__attribute__|__builtin_|__extension__|__typeof|__PRETTY_FUNCTION__|__int128|<bits/|<unistd\.h>|<strings\.h>|#include_next|\bssize_t\b|\b(str|wcs)n?casecmp\b|\b_?(strcpy|strcat|strncpy|strncat|wcscpy|wcscat|wcsncpy|wcsncat|sprintf|vsprintf|snwprintf|getenv|wgetenv|fopen|wfopen|freopen|sscanf|swscanf|strtok|localtime|gmtime|ctime|asctime|mbstowcs|wcstombs|strerror|tmpnam|stricmp|wcsicmp|itoa|itow) ?\('

check_foreign_names() {
    local found
    found="$(grep -rnE "$FOREIGN" "$ROOT/src" --include='*.cpp' --include='*.h' || true)"
    [ -z "$found" ] || fail "Visual C++ has not, or refuses: $found"
    found="$(grep -rnE '\bLoad(Library|Module|PackagedLibrary)(Ex)?[AW]?\b' "$ROOT/src" --include='*.cpp' --include='*.h' |
        grep -v '/platform/SystemLibrary\.cpp:' || true)"
    [ -z "$found" ] || fail "only SystemLibrary loads libraries, from the system's folder: $found"
}

# --- Resource scripts ---

# Prints what rc.exe would not read as other compilers do: a code page that is not stated once, before anything else, in a
# script that is compiled, and a macro's arguments on more than one line. usage: strange_lines TOP FILE
strange_lines() {
    awk -v top="$1" '
        function report(what) { print FILENAME ":" FNR ": " what }
        /^[ \t]*#[ \t]*pragma[ \t]+code_page/ {
            if (!top) report("an included file states a code page")
            else if (pages++) report("a second code page")
            else if (begun) report("the code page comes too late")
        }
        {
            text = $0
            gsub(/"([^"\\]|\\.|"")*"/, "", text)
            sub(/\/\/.*/, "", text)
            if (text ~ /[^ \t]/ && text !~ /^[ \t]*#[ \t]*pragma/) begun = 1
            if (gsub(/\(/, "", text) != gsub(/\)/, "", text)) report("a bracket is not closed on its line")
        }
        END { if (top && !pages) report("no code page") }' "$2"
}

# The resource scripts and what they include.
resource_files() {
    find "$ROOT"/{src,tests,hosts} -name '*.rc' -o -path "$RESOURCES/*.inc" -o -path "$RESOURCES/*.h"
}

check_resource_scripts() {
    local file strange="" included top checked=0
    included="$(resource_files | xargs -d '\n' sed -nE 's/^#include "(.*)"$/\1/p')"
    while read -r file; do
        top=1
        if grep -qxF "${file##*/}" <<<"$included"; then top=0; fi
        strange+="$(strange_lines "$top" "$file")"
        checked=$((checked + 1))
    done < <(resource_files)
    [ -z "$strange" ] || fail "$strange"
    [ "$checked" -ge 5 ] || fail "only $checked resource scripts found"
    compile_resources
    note "$checked resource scripts"
}

# Leaves the extended menus out of a script: llvm-rc 14 does not know them.
without_menus() {
    awk '
        /^[0-9]+ MENUEX[ \t]*$/ { inside = 1; depth = 0; next }
        !inside { print; next }
        /^[ \t]*BEGIN/ { ++depth }
        /^[ \t]*END/ && --depth == 0 { inside = 0 }'
}

# A second compiler of resources, closer to rc.exe than windres.
compile_resources() {
    local embedded="$BUILD/x86/src/resources-Kestrel"
    [ -f "$embedded/Kestrel.tlb" ] || fail "build/x86 is not built (tools/build.sh x86)"
    "$LLVM/clang-cl" --target=i686-pc-windows-msvc "${HEADER_OPTIONS[@]}" -DRC_INVOKED -I "$RESOURCES" -I "$embedded" /E /TC -- \
        "$RESOURCES/Kestrel.rc" | without_menus >"$WORK/Kestrel.rc" || fail "the resources cannot be read"
    # From its own folder: llvm-rc takes a path that begins with a slash for an option, where one begins with the same letters.
    (cd "$WORK" && "$LLVM/llvm-rc" /no-preprocess /c 65001 /I "$RESOURCES" /I "$embedded" /fo Kestrel.res Kestrel.rc) ||
        fail "the resources cannot be compiled"
}

# --- The type library ---

# Pedantic warnings about the description itself; those about the system's own files are not ours.
check_idl() {
    local bits folder found
    for bits in 32 64; do
        folder=/usr/lib/i386-linux-gnu/wine/i386-windows
        [ "$bits" = 32 ] || folder=/usr/lib/x86_64-linux-gnu/wine/x86_64-windows
        "$TRIPLE-widl" -W "--win$bits" -I "$WIDL_INCLUDES" -L "$folder" -t -o "$WORK/Kestrel$bits.tlb" \
            "$RESOURCES/Kestrel.idl" >"$WORK/widl.log" 2>&1 || fail "widl: $(grep -v '^/usr' "$WORK/widl.log")"
        found="$(grep -v '^/usr/' "$WORK/widl.log" || true)"
        [ -z "$found" ] || fail "widl: $found"
    done
    note "the type library's description"
}

main() {
    local words
    if [ "${1:-}" = --read ]; then
        IFS=$'\t' read -ra words <<<"$2"
        read_source "${words[@]}"
        return
    fi
    need_tools cmake python3 "$LLVM/clang-cl" "$LLVM/llvm-rc" "$TRIPLE-widl"
    mkdir -p "$WORK"
    check_configuration msvc-x86 i686-pc-windows-msvc 4 win32
    check_configuration msvc-x64 x86_64-pc-windows-msvc 8 x64
    check_foreign_names
    check_dialect
    check_resource_scripts
    check_idl
}

main "$@"

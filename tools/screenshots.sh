#!/usr/bin/env bash
# Takes the pictures of the user's guide: every dialog in both languages, with an empty and with a realistic rule.
# usage: tools/session.sh --wine tools/screenshots.sh   (after the 32-bit build of the target dialog_gallery)
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=tools/wine-env.sh
. "$ROOT/tools/wine-env.sh"

IMAGES="$ROOT/docs/images"
GALLERY="$BUILD/x86/dialog_gallery.exe"
WORK="$BUILD/screenshots"

# usage: take DIALOG RULE LANGUAGE LOCALE
take() {
    local name="$1-$2-$3"
    # The locale is set by env, for the shell itself need not know it.
    env LC_ALL="$4" timeout 60 "$ROOT/tools/wine.sh" "$GALLERY" "$1" "$2" "$(windows_path "$WORK/$name.bmp")" \
        >"$WORK/$name.log" 2>&1 </dev/null || fail "no picture of $name, see $WORK/$name.log"
    convert "$WORK/$name.bmp" -alpha off -strip +dither -colors 128 "png8:$IMAGES/$name.png"
    note "docs/images/$name.png"
}

main() {
    local language locale dialog
    [ -n "${DISPLAY:-}" ] || fail "usage: tools/session.sh --wine tools/screenshots.sh"
    [ -f "$GALLERY" ] || fail "build the target dialog_gallery first (cmake --build build/x86 --target dialog_gallery)"
    mkdir -p "$IMAGES" "$WORK"
    for language in en de; do
        locale=en_US.UTF-8
        [ "$language" = en ] || locale=de_DE.UTF-8
        for dialog in designer band fields options; do
            take "$dialog" empty "$language" "$locale"
            take "$dialog" filled "$language" "$locale"
        done
        for dialog in number drag findings tip refusal relation modify; do
            take "$dialog" filled "$language" "$locale"
        done
    done
}

main "$@"

#!/usr/bin/env bash
# The main job from end to end: sets up what is missing, builds the module, loads it into the stage, submits a scene
# and reports. See usage below.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
. "$ROOT/tools/lib/dependencies.sh"
. "$ROOT/tools/lib/wine.sh"

usage() {
    cat <<'TEXT'
./run                submits a small scene that the project makes itself
./run SCENE.max      submits any real scene
./run --window [SCENE.max]
                     leaves the stage open on your screen (needs DISPLAY), to try the plugin by hand
TEXT
}

# What the user gave cannot be used: exit status 2, like the stage's.
bad_input() { (die "$@") || exit 2; }

window=no
scene=
for argument in "$@"; do
    case $argument in
        -h | --help) usage; exit 0 ;;
        --window) window=yes ;;
        -*) usage >&2; bad_input "unknown option '$argument'" ;;
        *) [ -z "$scene" ] || bad_input "one scene at a time, please"; scene=$argument ;;
    esac
done
if [ -n "$scene" ]; then
    [ -f "$scene" ] || bad_input "there is no file '$scene'" "Give the path of a .max scene, or none for the built-in one."
    scene=$(realpath "$scene")
fi

install_packages "${RUN_PACKAGES[@]}"
generate_locales
fetch_run_dependencies

BIN=$TARVO_BUILD_DIR/mingw-release/bin
step "Building the module, the stage and the client"
build_preset mingw-release tarvo_module stage client make_scene

OUT=$TARVO_BUILD_DIR/run
rm -rf "$OUT"
mkdir -p "$OUT"
trap wine_down EXIT
[ "$window" = yes ] && use_own_screen
wine_up

if [ -z "$scene" ]; then
    scene="$OUT/Lobby.max"
    step "Making a scene: $scene"
    quietly "$TARVO_BUILD_DIR/logs/make_scene.log" "Run ./test to see what is broken." \
        in_wine en "$BIN/make_scene.exe" "$(windows_path "$scene")"
fi

if [ "$window" = yes ]; then
    step "The stage is open: choose the menu 'Tarvo Rendering'. Close the window to end."
    in_wine "${TARVO_LANGUAGE:-en}" "$BIN/stage.exe" "$(windows_path "$scene")" \
        --seven-zip "$(windows_path "$DEPS_DIR/7-Zip")" --scripts "$(windows_path "$ROOT/scripts")"
    exit
fi

play() {
    step "$2"
    bash "$ROOT/tools/play.sh" "$BIN" "$ROOT/tools/scenarios/$1.json" "$OUT/$1" "$scene"
}
status=0
play english "Submitting the scene, in English" || status=$?
[ "$status" = 2 ] && exit 2
play chinese "Opening the dialog in Chinese" || status=$?
echo
python3 "$ROOT/tools/report.py" --english "$OUT/english/transcript.json" --chinese "$OUT/chinese/transcript.json" \
    || status=$?
exit "$status"

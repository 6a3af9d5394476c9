#!/usr/bin/env bash
# looks.sh [FOLDER]: pictures of both dialogs in both languages at the scales 100, 150 and 200 %, with long notices and
# 0, 1, 5 and 1000 cameras, to be looked at. They go to build/looks when no folder is named.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
. "$ROOT/tools/lib/dependencies.sh"
. "$ROOT/tools/lib/wine.sh"
install_packages "${RUN_PACKAGES[@]}"
generate_locales
fetch_run_dependencies
build_preset mingw-release tarvo_module stage client
out=$(realpath -m "${1:-$TARVO_BUILD_DIR/looks}")
rm -rf "$out"
mkdir -p "$out"
trap wine_down EXIT
wine_up
scenario=$TARVO_BUILD_DIR/looks.json
for language in en zh; do
    python3 "$ROOT/tools/looks_scenario.py" "$language" >"$scenario"
    for scale in 100 150 200; do
        step "Looking at $language, $scale %"
        bash "$ROOT/tools/at_scale.sh" "$scale" \
            bash "$ROOT/tools/play.sh" "$TARVO_BUILD_DIR/mingw-release/bin" "$scenario" "$TARVO_BUILD_DIR/looks-run"
        for picture in "$TARVO_BUILD_DIR"/looks-run/*.png; do
            mv "$picture" "$out/$language-$scale-$(basename "$picture")"
        done
    done
done
say "The pictures are in $out"

#!/usr/bin/env bash
# make_pictures.sh: takes the pictures of the user guide again, in both languages, into docs/guide/pictures. They show
# the real windows of the module in the stage. Look at them before you commit them.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
. "$ROOT/tools/lib/dependencies.sh"
. "$ROOT/tools/lib/wine.sh"
install_packages "${RUN_PACKAGES[@]}"
generate_locales
fetch_run_dependencies

BIN=$TARVO_BUILD_DIR/mingw-release/bin
OUT=$TARVO_BUILD_DIR/pictures
step "Building the module and the stage"
build_preset mingw-release tarvo_module stage client
trap wine_down EXIT
wine_up
mkdir -p "$OUT"
for language in en zh; do
    step "Taking the pictures, language $language"
    # One scenario for both: it names texts by their numbers.
    sed "s/\"language\": \"en\"/\"language\": \"$language\"/" "$ROOT/tools/scenarios/pictures.json" \
        >"$OUT/$language.json"
    bash "$ROOT/tools/play.sh" "$BIN" "$OUT/$language.json" "$OUT/$language"
    target=$ROOT/docs/guide/pictures/$language
    mkdir -p "$target"
    rm -f "$target"/*.png
    cp "$OUT/$language"/*.png "$target/"
done
du -cbh "$ROOT"/docs/guide/pictures/*/*.png

#!/usr/bin/env bash
# names.sh [COUNT] [SEED]: packs scenes with random names through the real 7z.exe, on the code pages 1252, 936 and 65001 in turn, with
# neighbours beside each that a damaged name would hit, and looks at archive and neighbours afterwards. Ends at the
# first name that fails and says how to get it again.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/wine.sh"

COUNT=${1:-20000}
SEED=${2:-1}
LANGUAGES=(en zh utf8)
CHUNK=250 # names for one process of the test program
PROGRAM=$TARVO_BUILD_DIR/mingw-release/bin/win32_tests.exe
[ -f "$PROGRAM" ] || die "$PROGRAM is missing" "Run ./run once, or build the target win32_tests."

trap wine_down EXIT
wine_up
# Without a screen 7-Zip starts faster.
unset DISPLAY
export TARVO_SEVEN_ZIP="Z:$TARVO_BUILD_DIR/deps/7-Zip"
packed=0
for ((done = 0, chunk = 0; done < COUNT; done += CHUNK, chunk++)); do
    language=${LANGUAGES[chunk % 3]}
    export TARVO_NAMES=$((COUNT - done < CHUNK ? COUNT - done : CHUNK)) TARVO_NAMES_SEED=$((SEED + chunk))
    output=$(in_wine_buffered "$language" "$PROGRAM" --gtest_brief=1 --gtest_filter='ArchiveNames.*') || {
        printf '%s\n' "$output"
        die "a scene was not packed correctly" \
            "Again: TARVO_NAMES=$TARVO_NAMES TARVO_NAMES_SEED=$TARVO_NAMES_SEED, ArchiveNames.* in win32_tests ($language)."
    }
    line=$(printf '%s\n' "$output" | grep '^names: ')
    packed=$((packed + $(printf '%s' "$line" | sed 's/^names: \([0-9]*\).*/\1/')))
    printf '%s; %s of %s packed so far\n' "${line%$'\r'}" "$packed" "$COUNT"
done

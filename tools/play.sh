#!/usr/bin/env bash
# play.sh BIN SCENARIO OUT [SCENE.max]: plays one scenario in the stage, in the scenario's language; where that is any,
# in TARVO_LANGUAGE or English. The transcript
# and the screenshots are in OUT; the exit status is the stage's.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/wine.sh"
bin=$1 scenario=$2 out=$3 scene=${4:-}
wine_environment
language=$(python3 -c 'import json,sys; print(json.load(open(sys.argv[1], encoding="utf-8")).get("language", "en"))' "$scenario") \
    || language=en
[ "$language" = any ] && language=${TARVO_LANGUAGE:-en}
# ./test checks all scenarios at once.
if [ -z "${TARVO_SCENARIOS_CHECKED:-}" ] && /usr/bin/python3 -c 'import jsonschema' 2>/dev/null; then
    /usr/bin/python3 "$ROOT/tools/check_scenarios.py" "$scenario" >&2 || exit 2
fi
rm -rf "$out"
mkdir -p "$out"
arguments=(--scenario "$(windows_path "$scenario")" --out "$(windows_path "$out")"
    --seven-zip "$(windows_path "$DEPS_DIR/7-Zip")" --scripts "$(windows_path "$ROOT/scripts")" --windows-radio-buttons)
[ -n "$scene" ] && arguments+=(--scene "$(windows_path "$scene")")
in_wine_buffered "$language" "$bin/stage.exe" "${arguments[@]}"

#!/usr/bin/env bash
# wear.sh [OPENINGS [SUBMISSIONS]]: opens the dialog 500 times and submits 200 times in one process (about ten minutes),
# and prints what that left behind.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
. "$ROOT/tools/lib/dependencies.sh"
. "$ROOT/tools/lib/wine.sh"
openings=${1:-500} submissions=${2:-200}
install_packages "${RUN_PACKAGES[@]}"
generate_locales
fetch_run_dependencies
build_preset mingw-release tarvo_module stage client
trap wine_down EXIT
wine_up
scenario=$TARVO_BUILD_DIR/wear.json
python3 - "$ROOT/tests/scenarios/wear.json" "$openings" "$submissions" >"$scenario" <<'PYTHON'
import json
import sys

with open(sys.argv[1], encoding="utf-8") as file:
    scenario = json.load(file)
repeats = [step["repeat"] for step in scenario["steps"] if "repeat" in step]
for repeat, times in zip(repeats, sys.argv[2:]):
    repeat["times"] = int(times)
scenario["expect"]["request_count"] = int(sys.argv[3])
json.dump(scenario, sys.stdout)
PYTHON
status=0
bash "$ROOT/tools/play.sh" "$TARVO_BUILD_DIR/mingw-release/bin" "$scenario" "$TARVO_BUILD_DIR/wear" || status=$?
python3 - "$TARVO_BUILD_DIR/wear/transcript.json" <<'PYTHON'
import json
import sys

with open(sys.argv[1], encoding="utf-8") as file:
    transcript = json.load(file)
for repeat in transcript["repeats"]:
    print(f"{repeat['place']}: {repeat['times']} rounds in {repeat['milliseconds'] / 1000:.0f} s; the module has "
          f"{repeat['heap_blocks']} blocks ({repeat['heap_bytes']} bytes); second half of the rounds: "
          f"{repeat['heap_blocks_grown']:+} blocks, {repeat['heap_bytes_grown']:+} bytes, "
          f"{repeat['open_handles_grown']:+} handles, process {repeat['process_kb_grown']:+} KB")
print(f"not released at the end: {len(transcript['leaks'])}")
PYTHON
exit "$status"

#!/usr/bin/env bash
# sweep.sh [OPTION…]: builds the module, lets every call of every imported function and of the host fail once (an hour),
# and writes docs/faults.md. Options go to tools/sweep.py: --scenario NAME, --function PATTERN, --resume, --pause FILE.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
. "$ROOT/tools/lib/dependencies.sh"
. "$ROOT/tools/lib/wine.sh"

OUT=$TARVO_BUILD_DIR/faults
LANES=$((JOBS * 3))

sweep() { python3 "$ROOT/tools/sweep.py" --bin "$TARVO_BUILD_DIR/mingw-release/bin" --out "$OUT" "$@"; }
in_lane() (
    lane=$1
    shift
    use_lane "$lane"
    pin_to_lane
    CTEST_RESOURCE_GROUP_0_WINE=id:$lane,slots:1 sweep --lane "$lane" "$@"
)

install_packages "${RUN_PACKAGES[@]}"
generate_locales
fetch_run_dependencies
build_preset mingw-release tarvo_module stage client
trap wine_down EXIT
wine_up "$LANES"
lanes=()
for ((lane = 0; lane < LANES; ++lane)); do
    in_lane "$lane" --part "$((lane + 1))/$LANES" "$@" >"$TARVO_BUILD_DIR/logs/sweep-$lane.log" 2>&1 &
    lanes+=("$!")
done
for pid in "${lanes[@]}"; do wait "$pid" || true; done # the end judges
step "What the lanes left out, and once more what is not as it must be"
in_lane 0 --resume "$@" >"$TARVO_BUILD_DIR/logs/sweep-rest.log" 2>&1 || true
in_lane 0 --wrong "$@" >"$TARVO_BUILD_DIR/logs/sweep-wrong.log" 2>&1 || true
sweep --again --page "$ROOT/tests/faults/before/counts.json"

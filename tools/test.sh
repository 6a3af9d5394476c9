#!/usr/bin/env bash
# Runs every check: the cross build and its tests under Wine; beside them the native build under the sanitizers with its
# tests and the fuzz targets, and the checks of the sources. The exit status is 0 when everything passed.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
. "$ROOT/tools/lib/dependencies.sh"
. "$ROOT/tools/lib/wine.sh"

# A Wine test waits about half of its time.
LANES=$((JOBS * 2))
CROSS=$TARVO_BUILD_DIR/mingw-release
NATIVE=$TARVO_BUILD_DIR/native-asan
LOGS=$TARVO_BUILD_DIR/logs
# The folder of real scenes; see tests/standin/max_file/real_scenes_win32_test.cpp.
export TARVO_REAL_SCENES=${TARVO_REAL_SCENES:-$(realpath -m "$ROOT/../shared/scenes")}

# The two parts run beside the rest, with what it leaves of the processors; what they say is shown at the end.
native_part() {
    step "Building natively with the sanitizers"
    build_preset native-asan
    step "Native tests and bounded fuzzing"
    ctest --test-dir "$NATIVE" --output-on-failure -j "$JOBS"
}

source_part() {
    step "Building as with the host's SDK"
    bash "$ROOT/tools/mock_sdk.sh"
    step "Checking the sources"
    bash "$ROOT/tools/lint.sh"
}

# A process group of its own, so that an interrupted run leaves none of it behind.
part_pids=()
start_part() {
    set -m
    (renice -n 15 "$BASHPID" >/dev/null; "$1") >"$LOGS/$1.log" 2>&1 </dev/null &
    part_pids+=($!)
    set +m
}

closing_lines() {
    echo
    step "Results of the tests"
    grep -hE '^[0-9]+% tests passed|^Total Test time' "$LOGS/native_part.log" "$LOGS/wine-tests.log" || true
    python3 "$ROOT/tools/slowest.py" "$CROSS" "$NATIVE"
    local left_out
    left_out=$({ cat "$CROSS/passed/left_out" "$NATIVE/passed/left_out" 2>/dev/null || true; } | wc -l)
    [ "$left_out" = 0 ] || say "$left_out of them passed before and read nothing that has changed since: they were left \
out. TARVO_AGAIN=1 ./test runs everything."
    [ -d "$TARVO_REAL_SCENES" ] || say "No real scene was tested: the directory $TARVO_REAL_SCENES does not exist."
}

install_packages "${RUN_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${PACKAGE_PACKAGES[@]}"
generate_locales
# A test that passed is left out until something changes that it reads.
export TARVO_KEYED=1
rm -f "$CROSS/passed/left_out" "$NATIVE/passed/left_out"
mkdir -p "$LOGS"
end_parts() {
    for pid in "${part_pids[@]}"; do kill -- "-$pid" 2>/dev/null || true; done
}
trap end_parts EXIT
start_part native_part
fetch_run_dependencies
fetch_test_dependencies

step "Building for Windows"
build_preset mingw-release
step "Checking the finished module"
/usr/bin/python3 "$ROOT/tools/check_module.py" "$CROSS/bin/TarvoRendering.gup"

start_part source_part
trap 'end_parts; wine_down' EXIT
wine_up "$LANES"
status=0
step "Tests under Wine, $LANES at a time"
ctest --test-dir "$CROSS" --output-on-failure -j "$LANES" --resource-spec-file "$TARVO_BUILD_DIR/wine_lanes.json" \
    | tee "$LOGS/wine-tests.log" || status=1
for pid in "${part_pids[@]}"; do wait "$pid" || status=1; done
part_pids=()
cat "$LOGS/native_part.log" "$LOGS/source_part.log"
closing_lines
exit "$status"

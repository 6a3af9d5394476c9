#!/usr/bin/env bash
# Runs every check: the cross build and its tests under Wine; beside them, while those wait, the native build under the
# sanitizers, its tests, the fuzz targets and the checks of the sources. The exit status is 0 when everything passed.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
. "$ROOT/tools/lib/dependencies.sh"
. "$ROOT/tools/lib/wine.sh"

# A Wine test mostly waits; with more lanes than processors the machine still has time left for the rest.
LANES=$((JOBS * 3 / 2))
CROSS=$TARVO_BUILD_DIR/mingw-release
NATIVE=$TARVO_BUILD_DIR/native-asan
FUZZ=$TARVO_BUILD_DIR/native-fuzz
LOGS=$TARVO_BUILD_DIR/logs
# The folder of real scenes; see tests/standin/max_file/real_scenes_win32_test.cpp.
export TARVO_REAL_SCENES=${TARVO_REAL_SCENES:-$(realpath -m "$ROOT/../shared/scenes")}

native_part() {
    step "Building natively with the sanitizers"
    BUILD_PRIORITY=(nice -n 15)
    build_preset native-asan
    build_preset native-fuzz fuzzers
    local status=0
    step "Native tests"
    ctest --test-dir "$NATIVE" --output-on-failure || status=1
    step "Fuzzing, bounded"
    ctest --test-dir "$FUZZ" --output-on-failure || status=1
    return "$status"
}

# Beside the Wine tests; what it says is shown when they have ended.
rest() {
    local status=0
    (native_part) || status=1
    step "Checking the sources"
    nice -n 15 bash "$ROOT/tools/lint.sh" || status=1
    return "$status"
}

closing_lines() {
    echo
    step "Results of the tests"
    grep -hE '^[0-9]+% tests passed|^Total Test time' "$LOGS/native-tests.log" "$LOGS/wine-tests.log" || true
    python3 "$ROOT/tools/slowest.py" "$CROSS" "$NATIVE" "$FUZZ"
    [ -d "$TARVO_REAL_SCENES" ] || say "No real scene was tested: the directory $TARVO_REAL_SCENES does not exist."
}

install_packages "${RUN_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${PACKAGE_PACKAGES[@]}"
generate_locales
fetch_run_dependencies
fetch_test_dependencies

step "Building for Windows"
build_preset mingw-release
step "Building as with the host's SDK"
bash "$ROOT/tools/mock_sdk.sh"
step "Checking the finished module"
/usr/bin/python3 "$ROOT/tools/check_module.py" "$CROSS/bin/TarvoRendering.gup"

rest_pid=
end_everything() {
    [ -z "$rest_pid" ] || kill -- "-$rest_pid" 2>/dev/null || true
    wine_down
}
trap end_everything EXIT
wine_up "$LANES"
status=0
# A process group of its own, so that an interrupted run leaves none of it behind.
set -m
rest >"$LOGS/native-tests.log" 2>&1 </dev/null &
rest_pid=$!
set +m
step "Tests under Wine, $LANES at a time"
ctest --test-dir "$CROSS" --output-on-failure -j "$LANES" --resource-spec-file "$TARVO_BUILD_DIR/wine_lanes.json" \
    | tee "$LOGS/wine-tests.log" || status=1
wait "$rest_pid" || status=1
rest_pid=
cat "$LOGS/native-tests.log"
closing_lines
exit "$status"

#!/usr/bin/env bash
# bench.sh [analysis|submit|table|script|growth]: measures against named floors in the same run. The figures are ratios; the machine's noise is in them.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
. "$ROOT/tools/lib/dependencies.sh"
. "$ROOT/tools/lib/wine.sh"
install_packages "${RUN_PACKAGES[@]}"
fetch_run_dependencies
build_preset mingw-release bench
trap wine_down EXIT
wine_up
TARVO_SEVEN_ZIP=$(windows_path "$DEPS_DIR/7-Zip")
TARVO_TEST_DATA=$(windows_path "$ROOT/tests/data")
export TARVO_SEVEN_ZIP TARVO_TEST_DATA
in_wine_buffered en "$TARVO_BUILD_DIR/mingw-release/bin/bench.exe" "$@"

#!/usr/bin/env bash
# sweep.sh [OPTION…]: builds the module, lets every call of every imported function fail once (hours), and writes
# docs/faults.md. Options go to tools/sweep.py: --scenario NAME, --function PATTERN, --minutes M for each scenario.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
. "$ROOT/tools/lib/dependencies.sh"
. "$ROOT/tools/lib/wine.sh"
install_packages "${RUN_PACKAGES[@]}"
generate_locales
fetch_run_dependencies
build_preset mingw-release tarvo_module stage client
trap wine_down EXIT
wine_up
python3 "$ROOT/tools/sweep.py" --bin "$TARVO_BUILD_DIR/mingw-release/bin" --out "$TARVO_BUILD_DIR/faults" \
    --page "$ROOT/tests/faults/before/counts.json" "$@"

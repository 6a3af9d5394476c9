#!/usr/bin/env bash
# coverage.sh: lines and branches of the product that the unit tests run through, layer by layer. Builds with gcov's
# counters and runs under Wine.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
. "$ROOT/tools/lib/dependencies.sh"
. "$ROOT/tools/lib/wine.sh"
install_packages "${RUN_PACKAGES[@]}" "${TEST_PACKAGES[@]}"
generate_locales
fetch_run_dependencies
fetch_test_dependencies
build_preset mingw-coverage portable_tests win32_tests client make_scene
BUILD=$TARVO_BUILD_DIR/mingw-coverage
find "$BUILD" -name '*.gcda' -delete
trap wine_down EXIT
wine_up
ctest --test-dir "$BUILD" -R '^(portable|win32)_tests' --output-on-failure | tail -n 12 \
    || say "some tests failed: the figures are lower than they should be"
python3 "$ROOT/tools/coverage_report.py" "$BUILD"

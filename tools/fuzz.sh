#!/usr/bin/env bash
# fuzz.sh [SECONDS]: feeds the analysis reader for a long time (default ten minutes). What breaks it is left as a file
# crash-… beside the grown corpus.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
install_packages "${TEST_PACKAGES[@]}"
build_preset native-fuzz analysis_fuzzer
BUILD=$TARVO_BUILD_DIR/native-fuzz
cd "$BUILD"
exec bin/analysis_fuzzer -max_total_time="${1:-600}" -max_len=16384 -timeout=10 \
    -dict="$ROOT/tests/fuzz/analysis.dict" "$BUILD/corpus" "$ROOT/tests/data/analysis"

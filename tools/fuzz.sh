#!/usr/bin/env bash
# fuzz.sh [SECONDS [analysis|maxscript]]: feeds the analysis reader, or the script language, for a long time (default ten
# minutes, the analysis reader). What breaks it is left as a file crash-… beside the grown corpus.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
subject=${2:-analysis}
case $subject in
analysis) corpus=corpus ;;
maxscript) corpus=script_corpus ;;
*) die "no fuzz target '$subject'" "Give analysis or maxscript." ;;
esac
install_packages "${TEST_PACKAGES[@]}"
build_preset native-fuzz "${subject}_fuzzer"
BUILD=$TARVO_BUILD_DIR/native-fuzz
cd "$BUILD"
exec "bin/${subject}_fuzzer" -max_total_time="${1:-600}" -max_len=16384 -timeout=20 \
    -dict="$ROOT/tests/fuzz/$subject.dict" "$BUILD/$corpus" "$ROOT/tests/data/$subject"

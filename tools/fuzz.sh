#!/usr/bin/env bash
# fuzz.sh [--executions COUNT] [--build fast|sanitized] [--target NAME]… [--keep]: runs the fuzz targets, each for COUNT
# executions (100,000 unless told), and prints executions, speed and findings of each. Builds: fast has no sanitizers,
# sanitized has AddressSanitizer and UBSan. The grown corpus in the build directory serves both. An input that breaks a
# target is left in the build directory, as findings/TARGET-…. --keep then writes the smallest inputs that reach
# everything the grown corpus reaches to tests/fuzz/corpus/TARGET, 40 KB each at most.
# Interrupted, it loses nothing but the slice that was running: call it again with what is missing; runs.tsv has all runs.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"

executions=100000 build=sanitized keep=no targets=()
while [ "$#" -gt 0 ]; do
    case $1 in
    --executions) executions=${2:?how many} && shift 2 ;;
    --build) build=${2:?fast or sanitized} && shift 2 ;;
    --target) targets+=("${2:?which}") && shift 2 ;;
    --keep) keep=yes && shift ;;
    *) die "fuzz.sh does not know '$1'" "See the first lines of tools/fuzz.sh." ;;
    esac
done
case $build in
fast) preset=native-fuzz-fast ;;
sanitized) preset=native-asan ;;
*) die "there is no build '$build'" "Give fast or sanitized." ;;
esac

SLICE=2000000 # executions of one process
KEPT=40000    # bytes of a kept corpus
BUILD=$TARVO_BUILD_DIR/$preset
WORK=$TARVO_BUILD_DIR/fuzz
mkdir -p "$WORK/findings" "$WORK/logs"

install_packages "${TEST_PACKAGES[@]}"
all=()
for source in "$ROOT"/tests/fuzz/*_fuzzer.cpp; do
    name=$(basename "$source")
    all+=("${name%_fuzzer.cpp}")
done
[ "${#targets[@]}" -gt 0 ] || targets=("${all[@]}")
for target in "${targets[@]}"; do
    [ -f "$ROOT/tests/fuzz/${target}_fuzzer.cpp" ] || die "there is no target '$target'" "There are: ${all[*]}"
done
build_preset "$preset" "${targets[@]/%/_fuzzer}"

options_of() { tr ';' '\n' <"$BUILD/fuzz_options/$1"; }
corpora_of() {
    local folder
    for folder in "$ROOT/tests/fuzz/seeds/$1" "$ROOT/tests/fuzz/corpus/$1" "$ROOT/tests/data/$1"; do
        [ ! -d "$folder" ] || printf '%s\n' "$folder"
    done
}
count_findings() { find "$WORK/findings" -name "$1-*" | wc -l; }

# slice TARGET COUNT: one process. Sets `done_runs`; fails when the target broke.
slice() {
    local target=$1 count=$2 log=$WORK/logs/$1.log options corpora status=0 started=$SECONDS
    mapfile -t options < <(options_of "$target")
    mapfile -t corpora < <(corpora_of "$target")
    mkdir -p "$WORK/corpus/$target"
    "$BUILD/bin/${target}_fuzzer" "${options[@]}" -runs="$count" -print_final_stats=1 \
        -artifact_prefix="$WORK/findings/$target-" "$WORK/corpus/$target" "${corpora[@]}" >"$log" 2>&1 || status=$?
    done_runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    done_runs=${done_runs:-$(grep -oE '^#[0-9]+' "$log" | tail -n 1 | tr -d '#')}
    done_runs=${done_runs:-0}
    printf '%s\t%s\t%s\t%s\t%s\t%s\n' "$(date -u +%FT%TZ)" "$build" "$target" "$done_runs" "$((SECONDS - started))" \
        "$([ "$status" = 0 ] && echo 0 || echo 1)" >>"$WORK/runs.tsv"
    [ "$status" = 0 ] || grep -E 'BROKEN RULE|ERROR: |runtime error|SUMMARY' "$log" | head -n 3 >&2
    return "$status"
}

# Does not end at a finding of one target: the others run too.
fuzz() {
    local target=$1 left=$executions total=0 started=$SECONDS before
    before=$(count_findings "$target")
    while [ "$left" -gt 0 ]; do
        slice "$target" "$((left < SLICE ? left : SLICE))" || failed=1
        total=$((total + done_runs))
        left=$((left - done_runs))
        [ "$(count_findings "$target")" = "$before" ] || break
        [ "$done_runs" -gt 0 ] || break
    done
    local seconds=$((SECONDS - started))
    printf '%-10s %12d executions %8d a second %4d findings\n' "$target" "$total" \
        "$((total / (seconds > 0 ? seconds : 1)))" "$(($(count_findings "$target") - before))"
}

# The merge takes, from the smallest input on, what reaches code that nothing before it reached. How often it runs there
# does not count: that would keep hundreds.
keep_corpus() {
    local target=$1 merged=$WORK/merged/$1 kept=$ROOT/tests/fuzz/corpus/$1 options corpora total=0 size file
    mapfile -t options < <(options_of "$target")
    mapfile -t corpora < <(corpora_of "$target")
    rm -rf "$merged" && mkdir -p "$merged"
    "$BUILD/bin/${target}_fuzzer" "${options[@]}" -merge=1 -use_counters=0 "$merged" "$WORK/corpus/$target" "${corpora[@]}" \
        >"$WORK/logs/$target-merge.log" 2>&1 || die "the corpus of $target cannot be merged" "See $WORK/logs/$target-merge.log"
    rm -rf "$kept" && mkdir -p "$kept"
    while read -r size file; do
        total=$((total + size))
        [ "$total" -le "$KEPT" ] || break
        cp "$merged/$file" "$kept/$(sha1sum "$merged/$file" | cut -c 1-16)"
    done < <(find "$merged" -type f -printf '%s %f\n' | sort -n)
    printf '%-10s %4d inputs kept, %6d bytes\n' "$target" "$(find "$kept" -type f | wc -l)" "$((total < KEPT ? total : KEPT))"
}

failed=0
if [ "$executions" -gt 0 ]; then
    for target in "${targets[@]}"; do fuzz "$target"; done
fi
if [ "$keep" = yes ]; then
    for target in "${targets[@]}"; do keep_corpus "$target"; done
fi
[ "$failed" = 0 ] || say "What broke a target lies in $WORK/findings."
exit "$failed"

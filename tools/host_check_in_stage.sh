#!/usr/bin/env bash
# host_check_in_stage.sh BIN FOLDER: the stage's host runs FOLDER/HostCheck.ms unchanged, and its report is read: no
# difference. Then FOLDER/changed/HostCheck.ms, which expects something wrong: the reader has to say so.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
bin=$1 folder=$2
run_check() {
    cp "$ROOT/tools/host_check/stage.json" "$1/stage.json"
    rm -f "$1/TarvoHostCheck.txt"
    bash "$ROOT/tools/play.sh" "$bin" "$1/stage.json" "$1/stage"
    python3 "$ROOT/tools/read_host_report.py" "$1/TarvoHostCheck.txt"
}
run_check "$folder" || die "the stage's host differs from the facts" "The lines above name them."
answer=$(run_check "$folder/changed") && die "the report shows no difference for a wrong expectation" "$answer"
for fact in language.operators.Arithmetic.1 size.numbers; do
    grep -q "^$fact: " <<<"$answer" || die "the reader does not name $fact" "$answer"
done
say "the stage's host has the facts, and a wrong expectation is found"

#!/usr/bin/env bash
# keyed_test.sh: which tests tools/keyed.py runs, and which it leaves out.
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib/common.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/read" "$work/read/below"
echo one >"$work/read/below/file"
echo one >"$work/alone"
unset TARVO_AGAIN

# How often the command has been started in all.
ran() { [ -f "$work/ran" ] && wc -l <"$work/ran" || echo 0; }
keyed() { python3 "$ROOT/tools/keyed.py" "$work/passed" --reads "$work/read" "$work/alone" -- sh -c "echo x >>'$work/ran'; $1" >/dev/null; }
expect() { [ "$(ran)" = "$1" ] || die "$2" "The command ran $(ran) times, not $1."; }

TARVO_KEYED=0 keyed true
TARVO_KEYED=0 keyed true
expect 2 "A test that is started by hand was left out."
export TARVO_KEYED=1
keyed true
keyed true
expect 3 "A test that passed was run again."
TARVO_AGAIN=1 keyed true
expect 4 "TARVO_AGAIN=1 ran nothing."
echo two >"$work/read/below/file"
keyed true
expect 5 "A file below a directory changed, and the test was left out."
echo two >"$work/alone"
keyed true
expect 6 "A file changed, and the test was left out."
GTEST_SHARD_INDEX=1 keyed true
expect 7 "Another variable, and the test was left out."
rm "$work/alone"
keyed true 2>/dev/null && die "A file that a test reads is missing, and nobody is told."
expect 7 "A file that a test reads is missing, and the test ran."
echo two >"$work/alone"
for again in 8 9; do
    keyed false && die "A test that failed passes." "See keyed() in $0."
    expect "$again" "A test that failed was left out."
done
say "tests are left out when they passed and nothing that they read has changed"

#!/usr/bin/env bash
# keyed_test.sh: which tests tools/keyed.py runs, and which it leaves out.
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib/common.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/read" "$work/read/below"
echo one >"$work/read/below/file"
unset TARVO_AGAIN

# How often the command has been started in all.
ran() { [ -f "$work/ran" ] && wc -l <"$work/ran" || echo 0; }
keyed() { python3 "$ROOT/tools/keyed.py" "$work/passed" --reads "$work/read" "$work/missing" -- sh -c "echo x >>'$work/ran'; $1" >/dev/null; }
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
touch "$work/missing"
keyed true
expect 6 "A file that was missing is there, and the test was left out."
GTEST_SHARD_INDEX=1 keyed true
expect 7 "Another variable, and the test was left out."
touch "$work/read/other_tests.exe"
keyed true
expect 7 "Another test program counts."
for again in 8 9; do
    keyed false && die "A test that failed passes." "See keyed() in $0."
    expect "$again" "A test that failed was left out."
done
say "tests are left out when they passed and nothing that they read has changed"

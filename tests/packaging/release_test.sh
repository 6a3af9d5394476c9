#!/usr/bin/env bash
# release_test.sh BIN SCRIPTS OUT: puts the release together twice from the same build, in different folders, and looks
# at it. (tools/check_reproducible.sh compares two whole builds.)
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib/common.sh"
. "$ROOT/tools/lib/release.sh"
bin=$1 scripts=$2 out=$3
make_release "$bin" "$scripts" "$out/release"
make_release "$bin" "$scripts" "$out/the same once more"
diff -r "$out/release" "$out/the same once more" || die "the same files give different releases" "Look for times and orders."
"$PYTHON" "$ROOT/tools/check_release.py" "$out/release" "$(release_version)"

# A script that is missing is named, and nothing is made.
incomplete=$out/incomplete
mkdir -p "$incomplete"
cp "$scripts"/*.ms "$incomplete"
rm -rf "$incomplete/TarvoAntivirusAlc_UTF8.ms" "$out/nothing"
if message=$( (make_release "$bin" "$incomplete" "$out/nothing") 2>&1); then die "a release without a script was made"; fi
[[ $message == *"the script 'TarvoAntivirusAlc_UTF8.ms' is not in"* ]] || die "unclear message: $message"
[ ! -e "$out/nothing" ] || die "an incomplete release was left behind"

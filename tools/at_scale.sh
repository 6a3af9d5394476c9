#!/usr/bin/env bash
# at_scale.sh PERCENT COMMAND…: runs a command with the screen scale 100, 150 or 200 of the Wine that is up. A Windows
# program reads the scale once, when it starts.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/wine.sh"
wine_environment

set_scale() {
    local dots_per_inch=$((96 * $1 / 100))
    in_wine_buffered en reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$dots_per_inch" /f >/dev/null
}

scale=$1
shift
case $scale in
    100 | 150 | 200) ;;
    *) die "unknown scale '$scale'" "Use 100, 150 or 200." ;;
esac
trap 'set_scale 100' EXIT
set_scale "$scale"
"$@"

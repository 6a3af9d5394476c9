#!/usr/bin/env bash
# in_lane.sh COMMAND…: runs a command of this system with the Wine lane that ctest assigned; the word @prefix@ in the
# command becomes the folder of the lane's prefix.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/wine.sh"
wine_environment
command=()
for word in "$@"; do
    if [ "$word" = @prefix@ ]; then word=$WINE_PREFIX_DIR; fi
    command+=("$word")
done
exec "${command[@]}"

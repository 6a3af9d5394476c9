#!/usr/bin/env bash
# in_wine.sh LANGUAGE PROGRAM ARGUMENT…: runs a Windows program in the Wine that is up (see tools/lib/wine.sh).
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/wine.sh"
wine_environment
in_wine_buffered "$@"

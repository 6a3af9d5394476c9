#!/usr/bin/env bash
# check_module.sh MODULE: reads the finished module as the linker left it: what it exports and imports, how it may be
# loaded, and which resources identify it. One line for each check; the exit status is 1 when one has failed.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"

EXPORTS=(LibClassDesc LibDescription LibInitialize LibNumberClasses LibShutdown LibVersion)
# Windows' own, and the host's.
IMPORTS=(comctl32.dll gdi32.dll host_standin.dll kernel32.dll msvcrt.dll ole32.dll shell32.dll shlwapi.dll user32.dll winhttp.dll)
FLAGS=(DYNAMIC_BASE HIGH_ENTROPY_VA NX_COMPAT)

module=${1:-}
[ -f "$module" ] || die "there is no module '$module'" "Give the path of TarvoRendering.gup."
headers=$(x86_64-w64-mingw32-objdump -p "$module")
status=0

# report NAME PROBLEM: an empty problem is a check that has passed.
report() {
    if [ -z "$2" ]; then
        say "ok: $1"
    else
        say "FAILED: $1: $2"
        status=1
    fi
}

# lines_only_in FIRST SECOND: what the first list has more, in one line.
lines_only_in() { LC_ALL=C comm -23 <(printf '%s\n' "$1" | LC_ALL=C sort) <(printf '%s\n' "$2" | LC_ALL=C sort) | xargs; }
lines() { printf '%s\n' "$@"; }

check_exports() {
    local found wanted missing more problem=
    found=$(sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/^\t\[ *[0-9]*\] //p' <<<"$headers")
    wanted=$(lines "${EXPORTS[@]}")
    missing=$(lines_only_in "$wanted" "$found")
    more=$(lines_only_in "$found" "$wanted")
    [ -z "$missing" ] || problem="missing: $missing"
    [ -z "$more" ] || problem="$problem${problem:+; }not wanted: $more"
    report "exactly the ${#EXPORTS[@]} exports of a plugin" "$problem"
}

check_imports() {
    local found more
    found=$(sed -n 's/^\tDLL Name: //p' <<<"$headers" | tr '[:upper:]' '[:lower:]')
    more=$(lines_only_in "$found" "$(lines "${IMPORTS[@]}")")
    report "imports only from the host and from Windows" "$more"
    [[ $found == *host_standin.dll* ]] || report "imports from the host" "nothing"
}

check_flags() {
    local found flag size problem
    found=$(grep -A 12 '^DllCharacteristics' <<<"$headers")
    for flag in "${FLAGS[@]}"; do
        problem="not set"
        grep -qw "$flag" <<<"$found" && problem=
        report "flag $flag" "$problem"
    done
    # Without relocations the module lies where it was linked to, whatever the flags say.
    size=$(awk '/Base Relocation Directory/ { print $4 }' <<<"$headers")
    problem="none"
    [ "$((16#$size))" -gt 0 ] && problem=
    report "base relocations" "$problem"
}

check_exports
check_imports
check_flags
python3 "$ROOT/tools/check_resources.py" "$module" || status=1
exit "$status"

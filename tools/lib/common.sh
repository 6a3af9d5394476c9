# Shared by every command in tools/: where things are, messages, and root rights when they are needed.
# shellcheck shell=bash
set -euo pipefail

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
export TARVO_BUILD_DIR=${TARVO_BUILD_DIR:-$ROOT/build}
DEPS_DIR=$TARVO_BUILD_DIR/deps
JOBS=$(nproc)

say() { printf '%s\n' "$*"; }
step() { printf '== %s\n' "$*"; }
die() {
    printf 'error: %s\n' "$1" >&2
    shift
    for line in "$@"; do printf '       %s\n' "$line" >&2; done
    exit 1
}

# Runs a command quietly; when it fails, shows the end of what it said and what to do about it.
quietly() {
    local log=$1 advice=$2
    shift 2
    mkdir -p "$(dirname "$log")"
    if ! "$@" >"$log" 2>&1; then
        tail -n 40 "$log" >&2
        die "this failed: $*" "$advice" "The whole output is in $log"
    fi
}

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        die "packages have to be installed, and this is neither root nor is sudo there" \
            "Run the command as root, or install sudo."
    fi
}

# build_preset PRESET TARGET…: configures and builds; all targets when none is named.
build_preset() {
    local preset=$1 targets=()
    shift
    [ "$#" -gt 0 ] && targets=(--target "$@")
    quietly "$TARVO_BUILD_DIR/logs/$preset-configure.log" "Remove $TARVO_BUILD_DIR/$preset and try again." \
        cmake -S "$ROOT" --preset "$preset"
    quietly "$TARVO_BUILD_DIR/logs/$preset-build.log" "The first error above says what." \
        cmake --build "$TARVO_BUILD_DIR/$preset" -j "$JOBS" "${targets[@]}"
}

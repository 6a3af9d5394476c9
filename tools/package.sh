#!/usr/bin/env bash
# package.sh [--scripts DIR] [--out DIR]: builds the release: the setup, a zip for administrators, checksums.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
. "$ROOT/tools/lib/dependencies.sh"
. "$ROOT/tools/lib/release.sh"

usage() {
    cat <<'TEXT'
./package                   builds the setup, a zip and checksums in dist/
./package --out DIR         puts them elsewhere; the folder is emptied first
./package --scripts DIR     takes the host's scripts from there (default: scripts/)
TEXT
}

scripts=$ROOT/scripts
out=$ROOT/dist
while [ "$#" -gt 0 ]; do
    case $1 in
        -h | --help) usage; exit 0 ;;
        --scripts | --out) [ -n "${2:-}" ] || die "$1 needs a folder" ;;&
        --scripts) scripts=$2; shift 2 ;;
        --out) out=$2; shift 2 ;;
        *) usage >&2; die "unknown option '$1'" ;;
    esac
done

# Before anything is fetched or built.
check_scripts "$scripts"
install_packages "${RUN_PACKAGES[@]}" "${PACKAGE_PACKAGES[@]}"
fetch_run_dependencies
step "Building the module and the diagnostics"
build_preset mingw-release tarvo_module tarvo_diagnostics
step "Making the release"
make_release "$TARVO_BUILD_DIR/mingw-release/bin" "$scripts" "$out"
python3 "$ROOT/tools/check_release.py" "$out" "$(release_version)"
(cd "$out" && ls -l -- *)

#!/usr/bin/env bash
# package.sh [--module FILE] [--scripts DIR] [--out DIR]: builds the release: the setup, a zip for administrators, checksums.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/packages.sh"
. "$ROOT/tools/lib/dependencies.sh"
. "$ROOT/tools/lib/release.sh"

usage() {
    cat <<'TEXT'
./package --module FILE     makes a release in dist/ from a module that was built against the SDK of 3ds Max
                            (docs/building-with-the-sdk.md): the setup, a zip and checksums
./package                   makes a rehearsal of it: the module is built here against the stand-in, and 3ds Max
                            cannot load it
./package --out DIR         puts them elsewhere; the folder is emptied first
./package --scripts DIR     takes the host's scripts from there (default: scripts/)
TEXT
}

scripts=$ROOT/scripts
out=$ROOT/dist
module=
while [ "$#" -gt 0 ]; do
    case $1 in
        -h | --help) usage; exit 0 ;;
        --scripts | --out) [ -n "${2:-}" ] || die "$1 needs a folder" ;;&
        --module)
            [ -f "${2:-}" ] || die "--module needs a file: the TarvoRendering.gup that the build against the SDK gave"
            module=$(realpath "$2")
            shift 2
            ;;
        --scripts) scripts=$2; shift 2 ;;
        --out) out=$2; shift 2 ;;
        *) usage >&2; die "unknown option '$1'" ;;
    esac
done

# Before anything is fetched or built.
check_scripts "$scripts"
install_packages "${RUN_PACKAGES[@]}" "${PACKAGE_PACKAGES[@]}"
if [ -n "$module" ]; then
    step "Checking the module"
    "$PYTHON" "$ROOT/tools/check_module.py" --host "$module" \
        || die "this module cannot be released" "The lines above say why; docs/building-with-the-sdk.md, how to build it."
fi
fetch_run_dependencies
step "Building the module and the diagnostics"
build_preset mingw-release tarvo_module tarvo_diagnostics
bin=$TARVO_BUILD_DIR/mingw-release/bin
step "Assembling the release"
make_release "$bin" "$scripts" "$out" "${module:-$bin/TarvoRendering.gup}"
"$PYTHON" "$ROOT/tools/check_release.py" "$out" "$(release_version)"
(cd "$out" && ls -l -- *)
if [ -z "$module" ]; then
    say "This is a REHEARSAL and no release: its module is built against the stand-in, and 3ds Max cannot load it." \
        "Its setup installs only with /REHEARSAL. A release: ./package --module FILE"
fi

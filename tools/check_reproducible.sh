#!/usr/bin/env bash
# check_reproducible.sh [--scripts DIR]: builds the release twice, from copies of the sources in different folders and
# in different build folders, and compares every byte. Takes as long as two builds.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/release.sh"

scripts=$ROOT/scripts
[ "${1:-}" = --scripts ] && scripts=$(realpath "${2:-}")
check_scripts "$scripts"
release_time

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for name in first second-with-a-longer-name; do
    step "Building in a folder called $name"
    mkdir -p "$work/$name/sources" "$work/$name/build"
    git -C "$ROOT" ls-files -z --cached --others --exclude-standard | tar -C "$ROOT" --null -T - -cf - \
        | tar -C "$work/$name/sources" -xf -
    ln -s "$(realpath "$DEPS_DIR")" "$work/$name/build/deps"
    TARVO_BUILD_DIR=$work/$name/build bash "$work/$name/sources/tools/package.sh" --scripts "$scripts" \
        --out "$work/$name/dist" >"$work/$name.log" 2>&1 \
        || { tail -n 40 "$work/$name.log" >&2; die "the release could not be built"; }
done
if diff -r "$work/first/dist" "$work/second-with-a-longer-name/dist"; then
    (cd "$work/first/dist" && cat SHA256SUMS)
    say "both builds have the same bytes"
else
    die "the two builds differ" "Look for paths, times and orders that got into the files above."
fi

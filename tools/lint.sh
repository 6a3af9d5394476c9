#!/usr/bin/env bash
# Checks of the sources: floors and lengths, format, a second compiler, clang-tidy. A file that clang-tidy has passed
# is not read again until it, a header or the rules change.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
cd "$ROOT"

python3 tools/check_sources.py
python3 tools/check_boxes.py

mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h')
clang-format --dry-run --Werror "${sources[@]}" || die "the format differs" "Run: clang-format -i on the files above"
say "${#sources[@]} files have the house format"

bash tools/check_second_compiler.sh

# clang reads the cross build's commands, told where the compiler's own headers are.
TRIPLE=x86_64-w64-mingw32
gcc_include=$("$TRIPLE-g++-posix" -print-file-name=include)
gcc_version_dir=$(dirname "$gcc_include")
TIDY_ARGUMENTS=(--quiet -p "$TARVO_BUILD_DIR/mingw-release"
    --extra-arg-before=--target="$TRIPLE" --extra-arg=-fms-extensions --extra-arg=-Wno-unknown-warning-option
    --extra-arg=-isystem"$gcc_version_dir/include/c++"
    --extra-arg=-isystem"$gcc_version_dir/include/c++/$TRIPLE"
    --extra-arg=-isystem"/usr/$TRIPLE/include")
STAMPS=$TARVO_BUILD_DIR/tidy
mkdir -p "$STAMPS"
headers=$(git ls-files --cached --others --exclude-standard '*.h' .clang-tidy | LC_ALL=C sort | xargs sha256sum | sha256sum)
export STAMPS headers

tidy_one() {
    local source=$1 key
    shift
    key=$(printf '%s %s' "$headers" "$(sha256sum <"$source")" | sha256sum | cut -c1-40)
    [ -f "$STAMPS/$key" ] && return 0
    clang-tidy "$@" "$source" 2>/dev/null && touch "$STAMPS/$key"
}
export -f tidy_one

mapfile -t checked < <(git ls-files --cached --others --exclude-standard \
    'common/*.cpp' 'host/*.cpp' 'scene/*.cpp' 'submit/*.cpp' 'dialog/*.cpp' 'plugin/*.cpp' 'standin/*.cpp' 'packaging/*.cpp')
printf '%s\0' "${checked[@]}" | xargs -0 -P "$JOBS" -I{} bash -c 'tidy_one "$0" "$@"' {} "${TIDY_ARGUMENTS[@]}" \
    || die "clang-tidy found something" "Mend it, or give the reason in .clang-tidy."
say "${#checked[@]} files pass clang-tidy"

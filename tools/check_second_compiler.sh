#!/usr/bin/env bash
# Every product source through a second compiler, so that nothing of the first one's own creeps in: clang, strictly as
# C++14 with all its pedantic warnings, and once more playing the compiler that the host's SDK wants. A file that has
# passed is not read again until it, a header or this script changes.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
cd "$ROOT"

TRIPLE=x86_64-w64-mingw32
gcc_version_dir=$(dirname "$("$TRIPLE-g++-posix" -print-file-name=include)")

FLAGS=(--target="$TRIPLE" -fsyntax-only -std=c++14 -fms-extensions
    -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wundef
    -DUNICODE -D_UNICODE -DWIN32_LEAN_AND_MEAN -DNOMINMAX -D_WIN32_WINNT=0x0601 -DNTDDI_VERSION=0x06010000
    -I. -isystem standin/sdk/include -isystem "$DEPS_DIR/mingw/include"
    -isystem "$gcc_version_dir/include/c++" -isystem "$gcc_version_dir/include/c++/$TRIPLE"
    -isystem "/usr/$TRIPLE/include")
# The other compiler's rules for names and templates, and the branches for it (_MSC_VER 1900). The system headers here
# are those of GCC: without its version number and __STRICT_ANSI__ they have no va_list and refuse the language level.
# With them clang still knows GCC's keywords; that those stay out is the first pass's matter. The other compiler's own
# headers and library are not tried by this.
LIKE_THE_HOSTS=(-fms-compatibility -fms-compatibility-version=19.0 -fdelayed-template-parsing
    -fgnuc-version=12.2.0 -D__STRICT_ANSI__=1)

STAMPS=$TARVO_BUILD_DIR/second_compiler
mkdir -p "$STAMPS"
headers=$(git ls-files --cached --others --exclude-standard '*.h' tools/check_second_compiler.sh | LC_ALL=C sort \
    | xargs sha256sum | sha256sum)
export STAMPS headers

compile_one() {
    local source=$1 extra=$2 key
    shift 2
    key=$(printf '%s %s %s %s' "$headers" "$source" "$extra" "$(sha256sum <"$source")" | sha256sum | cut -c1-40)
    [ -f "$STAMPS/$key" ] && return 0
    # shellcheck disable=SC2086
    clang++ "$@" $extra "$source" && touch "$STAMPS/$key"
}
export -f compile_one

mapfile -t sources < <(grep -oE '^ +[a-z_0-9/]+\.cpp' cmake/sources.cmake | tr -d ' ')
[ "${#sources[@]}" -gt 0 ] || die "cmake/sources.cmake names no sources" "Mend the pattern above."
for extra in "" "${LIKE_THE_HOSTS[*]}"; do
    printf '%s\0' "${sources[@]}" | xargs -0 -P 2 -I{} bash -c 'compile_one "$0" "$@"' {} "$extra" "${FLAGS[@]}" \
        || die "clang does not take the sources" "Write what both compilers take; no extension of either."
done
say "${#sources[@]} product sources pass the second compiler, both as C++14 and as the host's compiler"

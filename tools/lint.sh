#!/usr/bin/env bash
# Checks of the sources: layers and lengths, format, clang-tidy, the rules of the host's compiler. Needs a configured cross build.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
cd "$ROOT"

python3 tools/check_sources.py
python3 tools/check_boxes.py

mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h')
clang-format --dry-run --Werror "${sources[@]}" || die "the files above are not formatted" "Run clang-format -i on them."
say "${#sources[@]} files are formatted"

python3 tools/clang_checks.py "$TARVO_BUILD_DIR/clang_checks" "$TARVO_BUILD_DIR/mingw-release" "$DEPS_DIR"
python3 tools/check_windows_target.py "$TARVO_BUILD_DIR/windows_target" "$TARVO_BUILD_DIR/mingw-release"

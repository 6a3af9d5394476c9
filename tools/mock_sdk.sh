#!/usr/bin/env bash
# mock_sdk.sh: the path with MAXSDK_ROOT, rehearsed. Makes a folder laid out and spelled as the host's SDK from the
# stand-in's headers and exports, split over the host's libraries, then configures and builds module and probe against it
# without optimisation, and looks at what they import. Needs the cross build of the stand-in. What it makes stays in the build folder.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"

TRIPLE=x86_64-w64-mingw32
SDK=$TARVO_BUILD_DIR/mock-sdk/maxsdk
STANDIN=$TARVO_BUILD_DIR/mingw-release/bin/host_standin.dll
HEADERS=$ROOT/standin/host_sdk/include
# The spelling that plug-ins' sources and the documentation show where it is not lower case.
declare -A SPELLED=([getcoreinterface.h]=GetCOREInterface.h [maxheap.h]=MaxHeap.h [imenuman.h]=iMenuMan.h
    [imenus.h]=iMenus.h [ifnpub.h]=iFnPub.h)
# Which library has which names, by the export macros that the documentation shows: the first pattern that fits.
LIBRARIES=(
    'gup 3GUP'
    'paramblk2 10ClassDesc2'
    'menus Z8GetIMenuv|Z12GetIMenuItemv'
    'maxscrpt ExecuteMAXScriptScript'
    'maxutil 4WStr|16MaxHeapOperators|15InterfaceServer|19BaseInterfaceServer'
    'core .')

copy_changed() { cmp -s "$1" "$2" || { mkdir -p "$(dirname "$2")"; cp "$1" "$2"; }; }

# Windows finds a header in any spelling; here a link stands for that.
make_headers() {
    local file name spelled
    while read -r file; do
        name=${file#"$HEADERS"/}
        spelled=${SPELLED[$name]:-$name}
        copy_changed "$file" "$SDK/include/$spelled"
        [ "$spelled" = "$name" ] || ln -sf "$spelled" "$SDK/include/$name"
    done < <(find "$HEADERS" -name '*.h')
}

make_libraries() {
    local folder=$SDK/lib/x64/Release entry library pattern rest taken
    mkdir -p "$folder"
    [ "$folder/core.lib" -nt "$STANDIN" ] && return
    rest=$("$TRIPLE-objdump" -p "$STANDIN" | sed -n '/Ordinal\/Name Pointer/,$p' | awk '/\[ *[0-9]+\]/ {print $NF}' \
        | grep -v host_sdk)
    for entry in "${LIBRARIES[@]}"; do
        read -r library pattern <<<"$entry"
        taken=$(grep -E "$pattern" <<<"$rest") || die "the stand-in exports nothing for $library.lib" "See LIBRARIES."
        rest=$(grep -vE "$pattern" <<<"$rest" || true)
        { echo EXPORTS; printf '%s\n' "$taken"; } >"$folder/$library.def"
        "$TRIPLE-dlltool" -d "$folder/$library.def" -D "$library.dll" -l "$folder/$library.lib"
    done
}

imports() { "$TRIPLE-objdump" -p "$1" | sed -n 's/^\tDLL Name: //p' | tr 'A-Z' 'a-z' | sort | tr '\n' ' '; }

make_headers
make_libraries
BUILT=$TARVO_BUILD_DIR/mock-sdk/build
quietly "$TARVO_BUILD_DIR/logs/mock-sdk-configure.log" "The first error above says what." \
    cmake -S "$ROOT" -B "$BUILT" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$ROOT/cmake/toolchain-mingw.cmake" \
    -DCMAKE_BUILD_TYPE=None -DTARVO_DEPS_DIR="$DEPS_DIR" -DMAXSDK_ROOT="$SDK"
quietly "$TARVO_BUILD_DIR/logs/mock-sdk-build.log" "The first error above says what." \
    cmake --build "$BUILT" -j "$JOBS" --target tarvo_module tarvo_probe
for module in TarvoRendering.gup TarvoHostProbe.gup; do
    found=$(imports "$BUILT/bin/$module")
    for library in core maxutil maxscrpt gup paramblk2 menus; do
        grep -qw "$library.dll" <<<"$found" || die "$module imports nothing from $library.dll" "It imports: $found"
    done
    grep -q host_standin <<<"$found" && die "$module imports the stand-in" "It imports: $found"
done
[ ! -e "$BUILT/bin/stage.exe" ] || die "with MAXSDK_ROOT the stage is built" "Look at CMakeLists.txt."
say "module and probe build with MAXSDK_ROOT against the layout of the host's SDK, and import all of its libraries"

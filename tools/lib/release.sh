# Puts a release together from what was built: the files as they are to lie, the setup, the zip, the checksums.
# shellcheck shell=bash

# What setup lays beside the plugin, and the file that 3ds Max runs itself.
DATA_SCRIPTS=(MaxRenderGlobalsParser.ms TarvoAntivirusAdsl_UTF8.ms TarvoAntivirusAlc_UTF8.ms TarvoAntivirusCrp_UTF8.ms)
PACKAGE_SCRIPTS=(PrepareAnalysisScript.ms)

release_version() {
    sed -n 's/^project(TarvoRendering VERSION \([0-9.]*\).*/\1/p' "$ROOT/CMakeLists.txt"
}

# Debian's, for which Debian's packages are installed.
PYTHON=/usr/bin/python3
# 3ds Max cannot load a module that imports this.
STANDIN_LIBRARY=host_standin.dll

# is_rehearsal MODULE: the module itself says what it was built against.
is_rehearsal() {
    local imports
    imports=$("$PYTHON" "$ROOT/tools/module_image.py" --imports "$1") || die "$1 cannot be released"
    grep -qx "$STANDIN_LIBRARY" <<<"$imports"
}

# release_name MODULE: how the files of a release begin.
release_name() {
    if is_rehearsal "$1"; then
        printf 'TarvoRendering-%s-rehearsal' "$(release_version)"
    else
        printf 'TarvoRendering-%s' "$(release_version)"
    fi
}

# The time that stands in everything that holds a time: that of the last commit, unless the caller says otherwise.
release_time() {
    if [ -z "${SOURCE_DATE_EPOCH:-}" ]; then
        SOURCE_DATE_EPOCH=$(git -C "$ROOT" log -1 --format=%ct 2>/dev/null) \
            || die "this is no git checkout, so the release has no time" "Set SOURCE_DATE_EPOCH (seconds since 1970)."
    fi
    export SOURCE_DATE_EPOCH
}

# Text files for Windows end their lines with CR LF; the mark in front tells older editors that they are UTF-8.
lay_text() {
    local target
    target=$2/${3:-$(basename "$1")}
    mkdir -p "$2"
    sed 's/\r$//; s/$/\r/' "$1" >"$target"
    case $target in *INSTALL.txt | *REHEARSAL.txt) sed -i '1s/^/\xEF\xBB\xBF/' "$target" ;; esac
}

check_scripts() {
    local scripts=$1 name
    for name in "${DATA_SCRIPTS[@]}" "${PACKAGE_SCRIPTS[@]}"; do
        [ -f "$scripts/$name" ] || die "the script '$name' is not in $scripts" \
            "A release needs all five: ${DATA_SCRIPTS[*]} ${PACKAGE_SCRIPTS[*]}." \
            "Give another folder with --scripts DIR."
    done
}

# lay_licences FOLDER: the notice, and the texts it names, from where the libraries themselves came from.
lay_licences() {
    local folder=$1
    lay_text "$ROOT/packaging/NOTICE.txt" "$folder"
    lay_text "$DEPS_DIR/7-Zip/License.txt" "$folder" 7-Zip.txt
    lay_text "$DEPS_DIR/src/jsoncpp/LICENSE" "$folder" JsonCpp.txt
    lay_text /usr/share/doc/libz-mingw-w64-dev/copyright "$folder" zlib.txt
    lay_text /usr/share/doc/mingw-w64-common/copyright "$folder" mingw-w64.txt
    lay_text /usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright "$folder" GCC-runtime.txt
    lay_text /usr/share/doc/nsis-common/copyright "$folder" NSIS.txt
    lay_text /usr/share/common-licenses/LGPL-2.1 "$folder" LGPL-2.1.txt
    lay_text /usr/share/common-licenses/GPL-3 "$folder" GPL-3.txt
}

# lay_files BIN MODULE SCRIPTS FOLDER: everything as it is to lie below C:\ProgramData.
lay_files() {
    local bin=$1 module=$2 scripts=$3 folder=$4 name
    local package=$folder/Autodesk/ApplicationPlugins/TarvoRendering data="$folder/Tarvo Rendering"
    lay_text "$ROOT/packaging/PackageContents.xml" "$package"
    lay_text "$ROOT/packaging/INSTALL.txt" "$package"
    lay_licences "$package/Licences"
    "$PYTHON" "$ROOT/tools/html_guide.py" "$package/Guide" >/dev/null || die "the guide cannot be made"
    install -D -m 644 "$module" "$package/Contents/TarvoRendering.gup"
    install -D -m 644 "$bin/tarvo_diagnostics.exe" "$package/Diagnostics/tarvo_diagnostics.exe"
    lay_text "$ROOT/packaging/diagnostics/TarvoDiagnostics.cmd" "$package/Diagnostics"
    install -D -m 644 -t "$data/7-Zip" "$DEPS_DIR/7-Zip/7z.exe" "$DEPS_DIR/7-Zip/7z.dll" "$DEPS_DIR/7-Zip/License.txt"
    for name in "${PACKAGE_SCRIPTS[@]}"; do install -D -m 644 "$scripts/$name" "$package/Contents/$name"; done
    for name in "${DATA_SCRIPTS[@]}"; do install -D -m 644 "$scripts/$name" "$data/script/$name"; done
    python3 "$ROOT/tools/make_manifest.py" "$folder"
}

# list_files LAYOUT: a line of the setup for each licence text and each file of the guide.
list_files() {
    local package=$1/Autodesk/ApplicationPlugins/TarvoRendering
    # shellcheck disable=SC2016
    (cd "$package" && find Licences Guide -type f -printf '%h %f\n') | LC_ALL=C sort \
        | sed 's,/,\\,g; s/\([^ ]*\) \(.*\)/${Lay} "${PACKAGE}\\\1" "\2"/'
}

# make_setup LAYOUT SETUP WORK
make_setup() {
    local layout=$1 setup=$2 work=$3 label=()
    list_files "$layout" >"$work/files.nsh"
    python3 "$ROOT/packaging/wizard_picture.py" "$work/wizard.bmp"
    is_rehearsal "$layout/Autodesk/ApplicationPlugins/TarvoRendering/Contents/TarvoRendering.gup" && label=(-DREHEARSAL)
    (cd "$ROOT/packaging" && quietly "$work/makensis.log" "The last lines above say what." \
        makensis -WX -V3 -NOCD -INPUTCHARSET UTF8 "-DVERSION=$(release_version)" "-DLAYOUT=$layout" "${label[@]}" \
        "-DFILE_LIST=$work/files.nsh" "-DOUT=$setup" "-DPICTURE=$work/wizard.bmp" \
        "-DSIZE_KB=$(find "$layout" -type f -printf '%s\n' | awk '{ sum += $1 } END { print int(sum / 1024) }')" \
        tarvo_setup.nsi)
}

# make_release BIN SCRIPTS OUT [MODULE]: fills OUT with the setup, the zip and their checksums. A MODULE that is built
# against the SDK of 3ds Max makes a release; the cross-built one in BIN makes a rehearsal, which everything says.
make_release() {
    local bin=$1 scripts=$2 out=$3 module=${4:-$1/TarvoRendering.gup} work name
    check_scripts "$scripts"
    release_time
    name=$(release_name "$module")
    work=$(mktemp -d)
    rm -rf "$out"
    mkdir -p "$out"
    out=$(realpath "$out")
    lay_files "$bin" "$module" "$scripts" "$work/layout"
    make_setup "$work/layout" "$out/$name-setup.exe" "$work"
    mkdir -p "$work/zip/ProgramData"
    cp -r "$work/layout/." "$work/zip/ProgramData"
    lay_text "$ROOT/packaging/INSTALL.txt" "$work/zip"
    lay_text "$ROOT/packaging/qfx_plugin.ini.sample" "$work/zip"
    if is_rehearsal "$module"; then lay_text "$ROOT/packaging/REHEARSAL.txt" "$work/zip"; fi
    python3 "$ROOT/tools/make_zip.py" "$out/$name.zip" "$work/zip"
    rm -rf "$work"
    (cd "$out" && sha256sum "$name-setup.exe" "$name.zip" >SHA256SUMS)
}

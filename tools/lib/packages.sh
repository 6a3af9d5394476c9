# Installs what the project builds and runs with. Only Debian packages and one npm package (7-Zip for Windows).
# shellcheck shell=bash
. "$(dirname "${BASH_SOURCE[0]}")/downloads.sh"

RUN_PACKAGES=(
    g++-mingw-w64-x86-64-posix libz-mingw-w64-dev libcli11-dev libutfcpp-dev cmake ninja-build make dpkg-dev xz-utils patch python3
    wine wine64 xvfb xauth locales fonts-noto-cjk fonts-wine npm
)
PACKAGE_PACKAGES=(nsis git python3-markdown-it)
TEST_PACKAGES=(
    g++ libjsoncpp-dev zlib1g-dev googletest libgtest-dev clang clang-format clang-tidy libclang-rt-14-dev git
    python3-jsonschema
)

# npm comes with Node.js where that was installed from elsewhere; asking for Debian's would clash with it.
missing_packages() {
    local name
    for name in "$@"; do
        if [ "$name" = npm ] && command -v npm >/dev/null; then
            continue
        fi
        dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'install ok installed' || printf '%s\n' "$name"
    done
}

install_packages() {
    local missing
    mapfile -t missing < <(missing_packages "$@")
    [ "${#missing[@]}" = 0 ] && return 0
    step "Installing ${#missing[@]} Debian packages: ${missing[*]}"
    download "the list of Debian's packages" apt "$TARVO_BUILD_DIR/logs/apt-update.log" with_proxies apt-get update
    # A full disk fails here too; apt says so itself.
    download "one of ${#missing[@]} Debian packages (${missing[*]})" apt "$TARVO_BUILD_DIR/logs/apt-install.log" \
        with_proxies env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
}

# The locale of the environment decides Wine's code page and interface language.
generate_locales() {
    local name
    for name in zh_CN hi_IN; do
        locale -a 2>/dev/null | grep -qix "$name.utf-\?8" && continue
        step "Generating the locale $name.UTF-8"
        quietly "$TARVO_BUILD_DIR/logs/locale.log" "Install the package locales." \
            as_root localedef -i "$name" -f UTF-8 "$name.UTF-8"
    done
}

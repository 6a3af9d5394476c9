# One Wine prefix, one Wine server and one virtual screen for a whole run. wine_up starts them, wine_down ends
# them; between the two, `in_wine LANGUAGE COMMAND…` runs a Windows program.
# shellcheck shell=bash

WINE_PREFIX_DIR=$TARVO_BUILD_DIR/wine
# Where C:\ProgramData of the prefix lies on this side.
PROGRAM_DATA_DIR=$WINE_PREFIX_DIR/drive_c/ProgramData

wine_environment() {
    export WINEPREFIX=$WINE_PREFIX_DIR WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all}
    # No browser engine, no .NET, no menu entries: none is needed, and each would ask or download.
    export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
}

wine_up() {
    wine_environment
    mkdir -p "$TARVO_BUILD_DIR"
    if [ ! -f "$WINE_PREFIX_DIR/.ready" ]; then
        step "Making a Wine prefix (about ten seconds, 700 MB)"
        rm -rf "$WINE_PREFIX_DIR"
        DISPLAY='' quietly "$TARVO_BUILD_DIR/logs/wineboot.log" "Remove $WINE_PREFIX_DIR and try again." \
            env LC_ALL=C.UTF-8 wineboot -i
        wineserver -w
        install_fonts
        touch "$WINE_PREFIX_DIR/.ready"
    fi
    start_screen
    # A server left over from a run that was cut off would still talk to that run's screen.
    wineserver -k 2>/dev/null || true
    wineserver -p
    hold_wine
    manage_windows
}

# The fonts a Windows machine has under these names. Wine links the second list behind its own fonts for characters
# that those lack, so that Chinese names show in an English dialog too.
install_fonts() {
    cp /usr/share/wine/fonts/*.ttf "$WINE_PREFIX_DIR/drive_c/windows/Fonts/"
    local font
    for font in SimSun 'MS UI Gothic' PMingLiU Gulim; do
        LC_ALL=C.UTF-8 wine reg add 'HKCU\Software\Wine\Fonts\Replacements' \
            /v "$font" /d 'Noto Sans CJK SC' /f >/dev/null 2>&1
    done
    wineserver -w
}

# On the virtual screen no window manager draws frames, and Wine would wait two seconds for its answer whenever a
# window closes: there Wine manages its windows itself. On a person's screen the desktop does.
manage_windows() {
    local wanted=N marker=$WINE_PREFIX_DIR/.managed
    [ -n "${TARVO_KEEP_DISPLAY:-}" ] && wanted=Y
    [ "$(cat "$marker" 2>/dev/null)" = "$wanted" ] && return 0
    local name
    for name in Managed Decorated; do
        LC_ALL=C.UTF-8 wine reg add 'HKCU\Software\Wine\X11 Driver' /v "$name" /d "$wanted" /f >/dev/null 2>&1
    done
    printf '%s' "$wanted" >"$marker"
}

# Wine's own services start with the first program, end with the last, and inherit the output of whoever came first:
# without a program that stays, each start is slow and a pipe behind it is never closed.
hold_wine() {
    local never=$TARVO_BUILD_DIR/never
    rm -f "$never"
    mkfifo "$never"
    # Opened for reading and writing, so that its end never comes.
    LC_ALL=C.UTF-8 wine cmd <>"$never" >/dev/null 2>&1 &
    HOLD_PID=$!
    LC_ALL=C.UTF-8 wine cmd /c exit >/dev/null 2>&1 </dev/null
}

start_screen() {
    [ -n "${TARVO_KEEP_DISPLAY:-}" ] && return 0
    local number=$TARVO_BUILD_DIR/display
    rm -f "$number"
    # Large enough for the dialogs at twice the usual scale.
    Xvfb -displayfd 3 -screen 0 2400x1800x24 -nolisten tcp 3>"$number" >/dev/null 2>&1 &
    SCREEN_PID=$!
    local tries=0
    until [ -s "$number" ]; do
        tries=$((tries + 1))
        [ "$tries" -lt 100 ] || die "the virtual screen (Xvfb) did not start" "Install the package xvfb."
        sleep 0.1
    done
    DISPLAY=:$(cat "$number")
    export DISPLAY
}

wine_down() {
    wine_environment
    wineserver -k 2>/dev/null || true
    local pid
    for pid in ${HOLD_PID:-} ${SCREEN_PID:-}; do
        kill "$pid" 2>/dev/null || true
    done
    SCREEN_PID= HOLD_PID=
}

# The locale of the environment decides code page and interface language: en is 1252 and English, zh is 936 and
# Simplified Chinese.
language_locale() {
    case $1 in
        en) echo C.UTF-8 ;;
        zh) echo zh_CN.UTF-8 ;;
        *) die "unknown language '$1'" "Use en or zh." ;;
    esac
}

in_wine() {
    local locale
    locale=$(language_locale "$1")
    shift
    LC_ALL=$locale LANG=$locale wine "$@"
}

# in_wine for a caller that reads the output through a pipe: Wine starts services of its own when a program first
# wants them, and they would keep the caller's pipe open after the program has ended.
in_wine_buffered() {
    local output status=0
    output=$(mktemp)
    in_wine "$@" >"$output" 2>&1 </dev/null || status=$?
    cat "$output"
    rm -f "$output"
    return "$status"
}

windows_path() { printf 'Z:%s' "$(realpath -m "$1" | tr / '\\')"; }

# For a person: the screen that is there instead of a virtual one.
use_own_screen() {
    [ -n "${DISPLAY:-}" ] || die "there is no screen (DISPLAY is not set)" "Run it on a desktop, or without --window."
    export TARVO_KEEP_DISPLAY=1
}

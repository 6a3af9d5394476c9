# Wine, in lanes. A lane is a Wine prefix, its Wine server and its virtual screen; programs of different lanes see
# neither each other's windows nor each other's files under C:, so tests of different lanes run at the same time.
# wine_up starts lane 0, `wine_up COUNT` the lanes 0 to COUNT-1, and wine_down ends them. Between the two,
# `in_wine LANGUAGE COMMAND…` runs a Windows program in the lane of this shell: 0, or the one that ctest assigned.
# shellcheck shell=bash

SCREEN_PIDS=()
HOLD_PIDS=()
LANES_UP=1

# use_lane LANE: makes it the lane of this shell.
use_lane() {
    WINE_PREFIX_DIR=$TARVO_BUILD_DIR/wine
    [ "$1" = 0 ] || WINE_PREFIX_DIR=$TARVO_BUILD_DIR/wine-$1
    # Where C:\ProgramData of the prefix lies on this side.
    PROGRAM_DATA_DIR=$WINE_PREFIX_DIR/drive_c/ProgramData
    SCREEN_FILE=$WINE_PREFIX_DIR.display
}

# The processors that this shell may use, one in a line.
processors() {
    local part
    for part in $(taskset -cp "$BASHPID" | sed 's/.*: //; s/,/ /g'); do seq "${part%-*}" "${part#*-}"; done
}

# Wine's server and its programs talk in short messages, and one that has to wake another processor costs several times
# as much (65 scenarios in four lanes: 102 seconds without this, 76 with it). So all of a lane runs on one processor.
pin_to_lane() {
    local file=$WINE_PREFIX_DIR.processor
    [ ! -s "$file" ] || taskset -cp "$(cat "$file")" "$BASHPID" >/dev/null 2>&1 || true
}

# ctest gives "id:LANE,slots:1" to a test that has the resource group "wine:1".
assigned_lane() {
    local assigned=${CTEST_RESOURCE_GROUP_0_WINE:-id:0,}
    assigned=${assigned#id:}
    echo "${assigned%%,*}"
}
use_lane "$(assigned_lane)"
[ -z "${CTEST_RESOURCE_GROUP_0_WINE:-}" ] || pin_to_lane

wine_environment() {
    export WINEPREFIX=$WINE_PREFIX_DIR WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all}
    # No browser engine, no .NET, no menu entries: none is needed, and each would ask or download.
    export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
    if [ -n "${CTEST_RESOURCE_GROUP_0_WINE:-}" ] && [ -s "$SCREEN_FILE" ]; then
        DISPLAY=:$(cat "$SCREEN_FILE")
        export DISPLAY
    fi
}

# make_prefixes COUNT: the prefixes of the lanes 0 to COUNT-1, where they are missing. Leaves no process behind.
make_prefixes() {
    local lane
    use_lane 0
    wine_environment
    mkdir -p "$TARVO_BUILD_DIR"
    if [ ! -f "$WINE_PREFIX_DIR/.ready" ]; then
        step "Making a Wine prefix (about ten seconds, 700 MB)"
        rm -rf "$WINE_PREFIX_DIR" "$WINE_PREFIX_DIR"-[0-9]*
        DISPLAY='' quietly "$TARVO_BUILD_DIR/logs/wineboot.log" "Remove $WINE_PREFIX_DIR and try again." \
            env LC_ALL=C.UTF-8 wineboot -i
        wineserver -w
        install_fonts
        touch "$WINE_PREFIX_DIR/.ready"
    fi
    for ((lane = 1; lane < $1; ++lane)); do
        use_lane "$lane"
        [ -f "$WINE_PREFIX_DIR/.ready" ] || copy_prefix "$TARVO_BUILD_DIR/wine" "$WINE_PREFIX_DIR"
    done
    use_lane 0
}

# Windows' own files are hard links to those of the first prefix: no program of ours writes to them, and a lane takes a
# few megabytes instead of 700. Everything else is copied.
copy_prefix() {
    local from=$1 to=$2 entry
    rm -rf "$to"
    mkdir -p "$to/drive_c"
    for entry in "$from"/* "$from"/.update-timestamp; do
        [ "$entry" = "$from/drive_c" ] || cp -a "$entry" "$to/"
    done
    for entry in "$from"/drive_c/*; do
        case $entry in
            */windows) cp -al "$entry" "$to/drive_c/" ;;
            *) cp -a "$entry" "$to/drive_c/" ;;
        esac
    done
    touch "$to/.ready"
}

wine_up() {
    local count=${1:-1} lane allowed
    make_prefixes "$count"
    LANES_UP=$count
    mapfile -t allowed < <(processors)
    for ((lane = count - 1; lane >= 0; --lane)); do
        use_lane "$lane"
        wine_environment
        rm -f "$WINE_PREFIX_DIR.processor"
        # One lane alone is a person's: it may use them all.
        [ "$count" = 1 ] || echo "${allowed[lane % ${#allowed[@]}]}" >"$WINE_PREFIX_DIR.processor"
        pin_to_lane
        start_screen
        # A server left over from a run that was cut off would still talk to that run's screen.
        wineserver -k 2>/dev/null || true
        wineserver -p
        hold_wine
        manage_windows
        end_crashed_programs
    done
    taskset -cp "$(IFS=,; echo "${allowed[*]}")" "$BASHPID" >/dev/null
    write_lanes "$count" >"$TARVO_BUILD_DIR/wine_lanes.json"
}

# The lanes as ctest reads them (--resource-spec-file).
write_lanes() {
    local lane list=
    for ((lane = 0; lane < $1; ++lane)); do
        list+="${list:+, }{\"id\": \"$lane\", \"slots\": 1}"
    done
    printf '{"version": {"major": 1, "minor": 0}, "local": [{"wine": [%s]}]}\n' "$list"
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

# A program that crashes prints where and ends. By default Wine opens a window about it and waits for a person.
end_crashed_programs() {
    local marker=$WINE_PREFIX_DIR/.no_crash_window
    [ ! -f "$marker" ] || return 0
    LC_ALL=C.UTF-8 wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null 2>&1
    touch "$marker"
}

# Wine's own services start with the first program, end with the last, and inherit the output of the first program:
# without a program that stays, each start is slow and a pipe behind it is never closed.
hold_wine() {
    local never=$WINE_PREFIX_DIR.never
    rm -f "$never"
    mkfifo "$never"
    # Opened for reading and writing, so that its end never comes.
    LC_ALL=C.UTF-8 wine cmd <>"$never" >/dev/null 2>&1 &
    HOLD_PIDS+=("$!")
    LC_ALL=C.UTF-8 wine cmd /c exit >/dev/null 2>&1 </dev/null
}

start_screen() {
    [ -n "${TARVO_KEEP_DISPLAY:-}" ] && return 0
    local number=$SCREEN_FILE
    rm -f "$number"
    # Large enough for the dialogs at twice the usual scale.
    Xvfb -displayfd 3 -screen 0 2400x1800x24 -nolisten tcp 3>"$number" >/dev/null 2>&1 &
    SCREEN_PIDS+=("$!")
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
    local lane pid
    for ((lane = LANES_UP - 1; lane >= 0; --lane)); do
        use_lane "$lane"
        wine_environment
        wineserver -k 2>/dev/null || true
    done
    for pid in "${HOLD_PIDS[@]}" "${SCREEN_PIDS[@]}"; do
        kill "$pid" 2>/dev/null || true
    done
    SCREEN_PIDS=() HOLD_PIDS=() LANES_UP=1
}

# The locale of the environment decides code page and interface language: en is 1252 and English, zh is 936 and
# Simplified Chinese. In a language without an ANSI page Wine uses UTF-8, as Windows does with its UTF-8 setting: utf8 is
# 65001, with the English texts.
language_locale() {
    case $1 in
        en) echo C.UTF-8 ;;
        zh) echo zh_CN.UTF-8 ;;
        utf8) echo hi_IN.UTF-8 ;;
        *) die "unknown language '$1'" "Use en, zh or utf8." ;;
    esac
}

# With TARVO_LIMIT, a program that runs longer than that many seconds is killed, with the programs it started.
in_wine() {
    local locale limit=()
    locale=$(language_locale "$1")
    shift
    [ -z "${TARVO_LIMIT:-}" ] || limit=(timeout --signal=KILL "$TARVO_LIMIT")
    LC_ALL=$locale LANG=$locale "${limit[@]}" wine "$@"
}

# in_wine for a caller that reads the output through a pipe: Wine starts services of its own when a program first
# wants them, and they would keep the caller's pipe open after the program has ended.
in_wine_buffered() {
    local output status=0
    output=$(mktemp)
    in_wine "$@" >"$output" 2>&1 </dev/null || status=$?
    cat "$output"
    if [ -n "${TARVO_LIMIT:-}" ] && [ "$status" = 137 ]; then
        say "HANGS: killed after $TARVO_LIMIT seconds: $*"
    fi
    rm -f "$output"
    return "$status"
}

windows_path() { printf 'Z:%s' "$(realpath -m "$1" | tr / '\\')"; }

# For a person: the screen that is there instead of a virtual one.
use_own_screen() {
    [ -n "${DISPLAY:-}" ] || die "there is no screen (DISPLAY is not set)" "Run it on a desktop, or without --window."
    export TARVO_KEEP_DISPLAY=1
}

#!/usr/bin/env bash
# host_probe_in_stage.sh BIN FOLDER: the stage's host loads TarvoHostProbe.gup, and its report has the picture that
# tests/data/host_facts/sdk.json describes. Then once more in a host without a main menu bar that cannot save: the reader
# has to say which beliefs are wrong and where they stand.
. "$(dirname "${BASH_SOURCE[0]}")/lib/common.sh"
. "$ROOT/tools/lib/wine.sh"
bin=$1 folder=$2
wine_environment
probe() {
    local scenario=$1 out=$folder/$2
    rm -rf "$out"
    mkdir -p "$out"
    cp "$bin/TarvoHostProbe.gup" "$out/"
    in_wine_buffered en "$bin/stage.exe" --scenario "$(windows_path "$scenario")" --out "$(windows_path "$out/stage")" \
        --module "$(windows_path "$out/TarvoHostProbe.gup")"
    python3 "$ROOT/tools/read_host_report.py" "$out/TarvoHostProbe.txt"
}
probe "$ROOT/tools/host_check/probe_stage.json" probe || die "the stage's host is not as believed" "See the lines above."
mkdir -p "$folder"
sed 's/"steps"/"host": {"no_main_menu_bar": true, "save_as_fails": true}, "steps"/' \
    "$ROOT/tools/host_check/probe_stage.json" >"$folder/probe_faults.json"
answer=$(probe "$folder/probe_faults.json" probe_faults) && die "the report shows no difference for a host without a menu bar" "$answer"
for line in 'menu.bar: start.main_menu_bar: expected object, got null' 'stands in: host/max_host.cpp, `MainMenuBar`' \
    'host.saving: saving.under_a_name: expected yes, got no'; do
    grep -qF "$line" <<<"$answer" || die "the reader does not say: $line" "$answer"
done
say "the probe's picture is the documented one, and a host that differs is found"

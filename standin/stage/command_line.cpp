#include "standin/stage/command_line.h"

#include "standin/base/text.h"

namespace stage {

namespace {

constexpr const char* kDescription =
    "stage: loads the plugin module the way the host does.\n"
    "With a scene it opens a copy of it in a window with the menu bar, for a\n"
    "person; with --scenario it plays a scenario and writes\n"
    "OUT/transcript.json.";

constexpr const char* kExitCodes =
    "Exit codes: 0 every expectation holds, 1 one does not, 2 bad input, 3 the run itself failed.\n";

void check_combination(const Options& options) {
    if (options.scenario.empty() && options.scene.empty()) {
        throw CLI::ValidationError("a scene file or --scenario is needed");
    }
    if (options.installed && (!options.seven_zip.empty() || !options.scripts.empty())) {
        throw CLI::ValidationError(
            "--installed copies nothing, so --seven-zip and --scripts cannot be combined with it");
    }
    if (!options.scenario.empty() && options.out.empty()) {
        throw CLI::ValidationError("--scenario needs --out, a directory for the transcript");
    }
}

} // namespace

base::Arguments parse_options(const std::vector<std::wstring>& arguments, const std::wstring& program_folder,
                              Options& options, std::string& text) {
    options.module = program_folder + L"\\TarvoRendering.gup";
    CLI::App app(kDescription);
    base::add_path(app, "--scene,scene", options.scene, "the scene, a .max file");
    base::add_path(app, "--scenario", options.scenario, "the scenario to play");
    base::add_path(app, "--out", options.out, "the directory that gets the transcript");
    base::add_path(app, "--module", options.module,
                   "the module (default: TarvoRendering.gup beside the program)");
    base::add_path(app, "--seven-zip", options.seven_zip,
                   "the directory that 7z.exe and 7z.dll are copied from");
    base::add_path(app, "--scripts", options.scripts, "the directory that the scripts are copied from");
    base::add_path(app, "--faults", options.faults,
                   "plays the scenario once for each fault in this file (see tools/sweep.py)");
    app.add_flag("--installed", options.installed,
                 "uses the data folder as it is installed and changes nothing in it; the client\n"
                 "listens on the port in its ini file");
    app.add_flag("--windows-radio-buttons", options.windows_radio_buttons,
                 "a radio button that gets the focus selects itself and reports a click");
    app.footer(kExitCodes);
    app.callback([&options] { check_combination(options); });
    return base::parse_arguments(app, arguments, text);
}

} // namespace stage

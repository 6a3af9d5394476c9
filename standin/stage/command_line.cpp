#include "standin/stage/command_line.h"

#include "standin/stage/wide_text.h"

namespace stage {

namespace {

struct ValueOption {
    const wchar_t* name;
    std::wstring Options::*target;
};

struct FlagOption {
    const wchar_t* name;
    bool Options::*target;
};

const FlagOption kFlagOptions[] = {
    {L"--help", &Options::help},
    {L"--print-keys", &Options::print_keys},
    {L"--installed", &Options::installed},
    {L"--windows-radio-buttons", &Options::windows_radio_buttons},
};

const ValueOption kValueOptions[] = {
    {L"--scenario", &Options::scenario}, {L"--out", &Options::out},
    {L"--scene", &Options::scene},       {L"--module", &Options::module},
    {L"--client", &Options::client},     {L"--seven-zip", &Options::seven_zip},
    {L"--scripts", &Options::scripts},   {L"--print-language", &Options::print_language},
};

std::wstring Options::*target_of(const std::wstring& name) {
    for (const ValueOption& option : kValueOptions) {
        if (name == option.name) {
            return option.target;
        }
    }
    return nullptr;
}

bool set_flag(const std::wstring& name, Options& options) {
    for (const FlagOption& option : kFlagOptions) {
        if (name == option.name) {
            options.*option.target = true;
            return true;
        }
    }
    return false;
}

bool check_whole(const Options& options, std::string& problem) {
    if (options.help || options.print_keys || !options.print_language.empty()) {
        return true;
    }
    if (options.scenario.empty() && options.scene.empty()) {
        problem = "a scene file or --scenario is needed";
        return false;
    }
    if (options.installed && (!options.seven_zip.empty() || !options.scripts.empty())) {
        problem = "--installed copies nothing, so --seven-zip and --scripts do not go with it";
        return false;
    }
    if (!options.scenario.empty() && options.out.empty()) {
        problem = "--scenario needs --out, a folder for the transcript";
        return false;
    }
    return true;
}

} // namespace

bool parse_options(const std::vector<std::wstring>& arguments, const std::wstring& program_folder,
                   Options& options, std::string& problem) {
    options.module = program_folder + L"\\TarvoRendering.gup";
    options.client = program_folder + L"\\client.exe";
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::wstring& argument = arguments[i];
        std::wstring Options::*target = target_of(argument);
        if (set_flag(argument, options)) {
            continue;
        }
        if (target != nullptr && i + 1 < arguments.size() && !arguments[i + 1].empty()) {
            options.*target = arguments[++i];
        } else if (target != nullptr) {
            problem = to_utf8(argument) + " needs a value";
            return false;
        } else if (argument.compare(0, 2, L"--") == 0 || !options.scene.empty()) {
            problem = "unknown argument '" + to_utf8(argument) + "'";
            return false;
        } else {
            options.scene = argument;
        }
    }
    return check_whole(options, problem);
}

std::string usage() {
    return "stage: loads the plugin module the way the host does.\n"
           "  stage SCENE.max                    opens a window with the menu bar for a person\n"
           "  stage --scenario FILE --out FOLDER plays a scenario and writes FOLDER/transcript.json\n"
           "  stage --print-language FILE        prints the language that a scenario wants (en or zh)\n"
           "  stage --print-keys                 prints every key that a scenario may have\n"
           "options:\n"
           "  --scene FILE       the scene of a scenario that takes it from the command line\n"
           "  --module FILE      the module (TarvoRendering.gup beside the program)\n"
           "  --client FILE      the desktop client (client.exe beside the program)\n"
           "  --seven-zip FOLDER where 7z.exe and 7z.dll are copied from\n"
           "  --scripts FOLDER   where the scripts are copied from\n"
           "  --installed        the data folder as it is installed: nothing is emptied, copied or written "
           "into it,\n"
           "                     and the client listens on the port in its ini file\n"
           "  --windows-radio-buttons\n"
           "                     a radio button that gets the focus selects itself and reports a click\n"
           "ends with 0 when every expectation holds, 1 when one does not, 2 for bad input, 3 for trouble\n";
}

} // namespace stage

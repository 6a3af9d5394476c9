// The stage: the host of the plugin module, for a person or for a scenario.
#include "standin/base/files_win32.h"
#include "standin/base/json.h"
#include "standin/base/program_win32.h"
#include "standin/base/text.h"
#include "standin/stage/command_line.h"
#include "standin/stage/stage_run.h"
#include "standin/stage/sweep.h"

#include <windows.h>

#include <csignal>
#include <cstdio>

namespace {

using namespace stage;

StageRun* g_run = nullptr;

int refuse(const std::string& problem) {
    std::fputs(("error: " + problem + "\n").c_str(), stderr);
    return kExitRefused;
}

LONG WINAPI on_crash(EXCEPTION_POINTERS* crash) {
    char what[64] = {};
    std::snprintf(what, sizeof what, "crash: exception 0x%08lX", crash->ExceptionRecord->ExceptionCode);
    g_run->give_up(what);
    return EXCEPTION_EXECUTE_HANDLER;
}

void on_abort(int) {
    g_run->give_up("crash: abort was called (an uncaught exception?)");
}

bool load_scenario(const std::wstring& file, Json::Value& scenario, std::string& problem) {
    std::string text;
    if (!base::read_file(file, text)) {
        problem = "cannot be read";
    } else if (base::parse_strictly(text, scenario, problem)) {
        problem = scenario.isObject() ? "" : "is not a JSON object";
    }
    problem = problem.empty() ? "" : base::to_utf8(file) + ": " + problem;
    return problem.empty();
}

int run_scenario(const Options& options) {
    Json::Value scenario;
    std::string problem;
    if (!load_scenario(options.scenario, scenario, problem)) {
        return refuse(problem);
    }
    const std::string wanted = scenario.get("language", "en").asString();
    if (wanted != "any" && wanted != system_language()) {
        return refuse("the scenario wants the language '" + wanted + "' and the system's is '" +
                      system_language() + "' (under Wine LC_ALL decides)");
    }
    // The machine has one data folder of the plugin, so a second run waits for the end of the first process,
    // which releases the mutex.
    const tarvo::KernelHandle turn(::CreateMutexW(nullptr, FALSE, L"TarvoStageRuns"));
    ::WaitForSingleObject(turn.get(), INFINITE);
    ::SetUnhandledExceptionFilter(&on_crash);
    std::signal(SIGABRT, &on_abort);
    try {
        if (!options.faults.empty()) {
            return sweep_faults(options, scenario, [](StageRun* run) { g_run = run; });
        }
        StageRun run(options, scenario);
        g_run = &run;
        return run.run();
    } catch (const Json::Exception& error) { // a value of the wrong type
        return refuse(base::to_utf8(base::name_of(options.scenario)) +
                      ": does not fit docs/scenario.schema.json (" + error.what() + ")");
    }
}

std::wstring temporary_folder() {
    wchar_t folder[MAX_PATH + 1] = {};
    ::GetTempPathW(MAX_PATH, folder);
    return std::wstring(folder) + L"tarvo-stage";
}

int run_for_person(Options options) {
    options.out = temporary_folder();
    Json::Value scenario(Json::objectValue);
    scenario["scene"]["from_command_line"] = true;
    scenario["client"] = Json::Value(Json::objectValue);
    StageRun run(options, scenario);
    return run.run_for_person();
}

} // namespace

int main() {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    Options options;
    std::string text;
    switch (parse_options(base::command_line_arguments(), base::program_folder(), options, text)) {
    case base::Arguments::bad:
        return refuse(text + "; --help lists the options");
    case base::Arguments::help:
        std::fputs(text.c_str(), stdout);
        return kExitPassed;
    case base::Arguments::good:
        break;
    }
    return options.scenario.empty() ? run_for_person(options) : run_scenario(options);
}

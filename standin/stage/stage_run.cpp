#include "standin/stage/stage_run.h"

#include "standin/base/files_win32.h"
#include "standin/base/text.h"
#include "standin/stage/expectations.h"
#include "standin/stage/fault_injector.h"
#include "standin/stage/heap_watch.h"
#include "standin/stage/resource_watch.h"
#include "standin/stage/steps.h"
#include "standin/stage/sweep.h"

#include <cstdio>
#include <thread>

namespace stage {

namespace {

constexpr const wchar_t* kTitle = L"Stage";
constexpr unsigned kSecondsAroundPlugin = 60;

host_sdk::Faults faults_of(const Json::Value& host) {
    host_sdk::Faults faults;
    faults.no_menu_manager = host.get("no_menu_manager", false).asBool();
    faults.no_main_menu_bar = host.get("no_main_menu_bar", false).asBool();
    faults.save_as_fails = host.get("save_as_fails", false).asBool();
    return faults;
}

// Watchdog for calls into the module.
class TimeLimit {
public:
    TimeLimit(StageRun& run, const std::string& what)
        : done_(::CreateEventW(nullptr, TRUE, FALSE, nullptr)), thread_([this, &run, what] {
              if (::WaitForSingleObject(done_.get(), kSecondsAroundPlugin * 1000) == WAIT_TIMEOUT) {
                  run.give_up("time limit: " + what);
              }
          }) {
        run.place(what);
    }
    ~TimeLimit() {
        ::SetEvent(done_.get());
        thread_.join();
    }
    TimeLimit(const TimeLimit&) = delete;
    TimeLimit& operator=(const TimeLimit&) = delete;

private:
    tarvo::KernelHandle done_;
    std::thread thread_;
};

void say(const std::string& line) {
    std::fputs((line + "\n").c_str(), stdout);
    std::fflush(stdout);
}

} // namespace

std::string system_language() {
    return PRIMARYLANGID(::GetUserDefaultUILanguage()) == LANG_CHINESE ? "zh" : "en";
}

StageRun::StageRun(const Options& given, const Json::Value& wanted)
    : options(given), scenario(wanted), scripts(transcript), plugin(module, transcript),
      out_(base::absolute_path(given.out)), started_(::GetTickCount64()) {}

bool StageRun::on_call(const char* name, const std::wstring& arguments) {
    Json::Value entry(Json::objectValue);
    entry["name"] = name;
    entry["arguments"] = base::to_utf8(arguments);
    transcript.append("host_calls", entry);
    return host_call_goes_on(name);
}

std::wstring StageRun::out_file(const std::wstring& name) const {
    return base::joined(out_, name);
}

void StageRun::place(const std::string& place) {
    const std::lock_guard<std::mutex> lock(place_mutex_);
    place_ = place;
}

std::string StageRun::place() {
    const std::lock_guard<std::mutex> lock(place_mutex_);
    return place_;
}

void StageRun::fail(const std::string& place, const std::string& expected, const std::string& got) {
    Json::Value outcome(Json::objectValue);
    outcome["place"] = place;
    outcome["held"] = false;
    outcome["expected"] = expected;
    outcome["got"] = got;
    transcript.append("outcomes", outcome);
}

bool StageRun::open_scene(const Json::Value& wanted, const Json::Value& analysis, std::string& problem) {
    if (wanted.isNull()) {
        scripts.set_analysis(analysis);
        return true;
    }
    StageScene scene;
    if (!prepare_scene(wanted, options.scene, scene_folder(), scene, problem)) {
        return false;
    }
    scripts.set_scene(scene, analysis);
    host_sdk::set_scene(scene.model.path, scene.needs_save);
    transcript.set("scene", "path", base::to_utf8(scene.model.path));
    return true;
}

bool StageRun::start_client(const Json::Value& wanted, std::string& problem) {
    if (!fault.isNull() && client.is_running()) {
        client.forget_requests();
        return true;
    }
    return client.start(base::joined(base::program_folder(), L"client.exe"), wanted, out_,
                        data.adopted_port(), problem);
}

// Prepares the folders, the client and the plugin's data folder.
bool StageRun::prepare_outside(std::string& problem) {
    for (const wchar_t* old : {L"transcript.json", L"client-requests.jsonl", L"scene"}) {
        const bool in_use = client.is_running() && std::wstring(old) == L"client-requests.jsonl";
        if (!in_use && !base::remove_tree(out_file(old))) {
            problem = base::to_utf8(out_file(old)) + ": cannot be removed";
            return false;
        }
    }
    if (!base::make_folder(scene_folder())) {
        problem = base::to_utf8(scene_folder()) + ": cannot be made";
        return false;
    }
    if (options.installed && scenario.isMember("data_folder")) {
        problem = "data_folder: cannot be combined with --installed";
        return false;
    }
    if (options.installed && !data.adopt(problem)) {
        return false;
    }
    if (scenario.isMember("client") && !start_client(scenario["client"], problem)) {
        return false;
    }
    if (options.installed) {
        return true;
    }
    const DataSources sources = {
        options.seven_zip.empty() ? options.seven_zip : base::absolute_path(options.seven_zip),
        options.scripts.empty() ? options.scripts : base::absolute_path(options.scripts)};
    return data.prepare(scenario["data_folder"], sources, port(), problem);
}

// A host that has just started, with the scenario's faults.
void StageRun::connect_host() {
    host_sdk::reset();
    host_sdk::set_faults(faults_of(scenario["host"]));
    host_sdk::set_script_runner(&scripts);
    host_sdk::set_call_recorder(this);
    host_sdk::set_main_window(frame.window());
}

// The menus that a host keeps when it ends without stopping the plugin.
bool StageRun::load_menus_of_earlier_run(std::string& problem) {
    Transcript unwanted;
    ModuleFile earlier;
    host_sdk::set_call_recorder(nullptr);
    if (!earlier.load(base::absolute_path(options.module), problem)) {
        return false;
    }
    PluginLife life(earlier, unwanted);
    if (!life.start(false, problem)) {
        return false;
    }
    const std::wstring menu_file = host_sdk::save_menus();
    life.stop();
    connect_host();
    host_sdk::load_menus(menu_file);
    return true;
}

// A file's name begins with "scene/" or is below the data folder.
void StageRun::install_fault() {
    const std::wstring name = base::to_wide(fault.get("file", "").asString());
    const bool of_scene = name.compare(0, 6, L"scene/") == 0;
    const std::wstring file = of_scene ? out_file(name) : base::joined(data.path(), name);
    install_shortcuts(module.handle());
    install_fault_injector(module.handle(), fault, [this, file] {
        file_fault_.begin(fault["action"].asString(), file, out_file(L"aside"));
    });
}

bool StageRun::open_module(std::string& problem) {
    if (!module.load(base::absolute_path(options.module), problem)) {
        return false;
    }
    transcript.set("texts", module.texts());
    transcript.set("module", module.description());
    dialogs.reset(new DialogWatch(transcript, frame.window(), options.windows_radio_buttons));
    boxes.reset(new BoxWatch(transcript, module, *dialogs));
    boxes->prepare(scenario);
    if (options.scenario.empty()) { // for a person nothing is recorded
        return true;
    }
    if (!fault.isNull()) {
        install_fault();
    }
    boxes->install(module.handle());
    dialogs->install(module.handle());
    install_resource_watch(module.handle(), transcript);
    install_heap_watch(module.handle());
    return true;
}

bool StageRun::prepare(std::string& problem) {
    transcript.set("scenario", base::to_utf8(options.scenario));
    transcript.set("description", scenario.get("description", ""));
    transcript.set("language", system_language());
    Json::Value closed(Json::objectValue);
    closed["open"] = false;
    transcript.set("dialog_state", "main", closed);
    transcript.set("dialog_state", "edit", closed);
    if (!prepare_outside(problem)) {
        return false;
    }
    if (!frame.create(kTitle)) {
        problem = "no window can be opened (is there a screen?)";
        return false;
    }
    ui.reset(new UiThread(frame.window(), [this] { give_up("time limit: " + place()); }));
    connect_host();
    if (scenario["host"].isMember("menu_file") && !load_menus_of_earlier_run(problem)) {
        return false;
    }
    scripts.start_host(options.installed ? base::folder_of(base::absolute_path(options.module))
                                         : data.script_folder(),
                       base::folder_of(data.path()));
    transcript.set("scene", "path", "");
    return open_scene(scenario["scene"], scenario["analysis"], problem) && open_module(problem);
}

bool StageRun::start_plugin(std::string& problem) {
    const TimeLimit limit(*this, "starting the plugin");
    return plugin.start(scenario["host"].get("menu_bar_rebuilt", false).asBool(), problem);
}

void StageRun::play() {
    data.mark(scene_folder());
    std::string problem;
    if (!start_plugin(problem)) {
        fail("plugin", "started", problem);
        return;
    }
    transcript.set("menus", menu_lines());
    std::thread driver([this] {
        Steps(*this).run_all();
        frame.quit();
    });
    frame.run();
    driver.join();
    transcript.set("menus", menu_lines());
}

void StageRun::end() {
    const TimeLimit limit(*this, "ending the plugin");
    plugin.stop();
    transcript.set("menus_after_stop", menu_lines());
    module.unload();
    end_faults();
    if (fault.isNull()) {
        client.stop();
    }
    transcript.set("leaks", open_resources());
}

void StageRun::gather() {
    transcript.set("requests", client.requests());
    transcript.set("files", data.appeared());
    transcript.set("logs", data.logs());
    transcript.set("milliseconds", static_cast<Json::Int64>(::GetTickCount64() - started_));
}

// The result of the scenario's steps, before its recovery.
void StageRun::end_of_faults() {
    end_faults();
    file_fault_.restore();
    transcript.set("leaks", open_resources());
    gather();
    Json::Value so_far = transcript.copy();
    for (const char* key : {"texts", "commands", "module", "start_scripts"}) {
        so_far.removeMember(key);
    }
    transcript.set("before_recovery", so_far);
}

void StageRun::judge(const Json::Value& expect, const std::string& place) {
    gather();
    Json::Value outcomes(Json::arrayValue);
    evaluate_expectations(expect, transcript.copy(), place, outcomes);
    for (const Json::Value& outcome : outcomes) {
        transcript.append("outcomes", outcome);
    }
}

int StageRun::report() {
    judge(scenario.isMember("expect") ? scenario["expect"] : Json::Value(Json::objectValue), "expect");
    Json::Value standing(Json::arrayValue);
    evaluate_standing_rules(scenario["expect"], transcript.copy(), standing);
    for (const Json::Value& outcome : standing) {
        transcript.append("outcomes", outcome);
    }
    const Json::Value outcomes = transcript.copy()["outcomes"];
    unsigned failed = 0;
    for (const Json::Value& outcome : outcomes) {
        if (!outcome["held"].asBool()) {
            ++failed;
            say("FAILED " + outcome["place"].asString() + ": expected " + outcome["expected"].asString() +
                ", got " + outcome["got"].asString());
        }
    }
    const int code = failed == 0 ? kExitPassed : kExitFailed;
    transcript.set("exit_code", code);
    if (!transcript.write(out_file(L"transcript.json"))) {
        std::fputs("error: the transcript cannot be written\n", stderr);
        return kExitTrouble;
    }
    say((failed == 0 ? "passed: " : "failed: ") + base::to_utf8(base::name_of(options.scenario)) + ", " +
        std::to_string(outcomes.size() - failed) + " expectations hold, " + std::to_string(failed) +
        " do not");
    return code;
}

int StageRun::run_for_person() {
    std::string problem;
    if (!prepare(problem) || !start_plugin(problem)) {
        std::fputs(("error: " + problem + "\n").c_str(), stderr);
        return kExitRefused;
    }
    say("the menu is in the window's menu bar; logs and archives are in " + base::to_utf8(data.path()));
    frame.run();
    end();
    return kExitPassed;
}

int StageRun::run() {
    blocks_before_ = heap_use().blocks;
    std::string problem;
    if (!prepare(problem)) {
        std::fputs(("error: " + problem + "\n").c_str(), stderr);
        return kExitRefused;
    }
    play();
    end();
    gather();
    if (!fault.isNull()) {
        transcript.set("faults", fault_report());
        transcript.set("escaped", static_cast<Json::Int64>(host_sdk::escaped_exceptions()));
        transcript.set("heap_blocks_kept", static_cast<Json::Int64>(heap_use().blocks - blocks_before_));
        return kExitPassed;
    }
    return report();
}

void StageRun::give_up(const std::string& trouble) {
    // The first thread that calls this reports; others wait for the end of the process.
    if (given_up_.exchange(true)) {
        ::Sleep(INFINITE);
    }
    std::fputs(("trouble: " + trouble + "\n").c_str(), stderr);
    std::fflush(stderr);
    transcript.set("trouble", trouble);
    transcript.set("exit_code", kExitTrouble);
    transcript.set("leaks", open_resources());
    client.stop();
    gather();
    transcript.write(out_file(L"transcript.json"));
    ::TerminateProcess(::GetCurrentProcess(), kExitTrouble);
}

} // namespace stage

#include "standin/stage/stage_for_person.h"

#include "standin/base/files_win32.h"
#include "standin/base/text.h"
#include "standin/host_sdk/control.h"
#include "standin/stage/client_process.h"
#include "standin/stage/data_folder.h"
#include "standin/stage/frame_window.h"
#include "standin/stage/module_file.h"
#include "standin/stage/plugin_life.h"
#include "standin/stage/scene_source.h"
#include "standin/stage/script_runner.h"

#include <cstdio>

namespace stage {

namespace {

void say(const std::string& line) {
    std::fputs((line + "\n").c_str(), stdout);
    std::fflush(stdout);
}

int refuse(const std::string& problem) {
    std::fputs(("error: " + problem + "\n").c_str(), stderr);
    return kExitRefused;
}

// Without a client program the plugin finds nobody listening, which is worth a look too.
int start_client(const Options& options, const std::wstring& folder, int port, ClientProcess& client) {
    std::string problem;
    if (!base::file_exists(options.client)) {
        say("no client program: submitting will find nobody listening");
        return 0;
    }
    if (!client.start(base::absolute_path(options.client), Json::Value(Json::objectValue), folder, port,
                      problem)) {
        say("the client: " + problem);
        return 0;
    }
    say("the client listens on port " + std::to_string(client.port()));
    return client.port();
}

std::wstring temporary_folder() {
    wchar_t folder[MAX_PATH + 1] = {};
    ::GetTempPathW(MAX_PATH, folder);
    return std::wstring(folder) + L"tarvo-stage";
}

// The data folder and the client, of which an installed folder says the port.
bool prepare_outside(const Options& options, ClientProcess& client, const SilentPort& nobody,
                     DataFolder& data, std::string& problem) {
    if (options.installed && !data.adopt(problem)) {
        return false;
    }
    base::make_folder(temporary_folder());
    const int port = start_client(options, temporary_folder(), data.adopted_port(), client);
    return options.installed ||
           data.prepare(Json::Value(Json::objectValue), {options.seven_zip, options.scripts},
                        port != 0 ? port : nobody.number(), problem);
}

} // namespace

int run_for_person(const Options& options) {
    std::string problem;
    StageScene scene;
    if (!open_scene(options.scene, scene, problem)) {
        return refuse(problem);
    }
    ClientProcess client;
    SilentPort nobody;
    DataFolder data;
    if (!prepare_outside(options, client, nobody, data, problem)) {
        return refuse(problem);
    }
    Transcript transcript;
    StageScripts scripts(transcript);
    scripts.start_host(options.installed ? base::folder_of(base::absolute_path(options.module))
                                         : data.script_folder(),
                       base::folder_of(data.path()));
    scripts.set_scene(scene, Json::Value());
    FrameWindow frame;
    if (!frame.create(L"Stage - " + scene.model.path)) {
        return refuse("no window can be opened (is there a screen?)");
    }
    host_sdk::reset();
    host_sdk::set_script_runner(&scripts);
    host_sdk::set_main_window(frame.window());
    host_sdk::set_scene(scene.model.path, false);
    ModuleFile module;
    if (!module.load(base::absolute_path(options.module), problem)) {
        return refuse(problem);
    }
    PluginLife plugin(module, transcript);
    if (!plugin.start(false, problem)) {
        return refuse(problem);
    }
    say("the menu is in the window's menu bar; logs and archives lie in " + base::to_utf8(data.path()));
    frame.run();
    plugin.stop();
    return kExitHeld;
}

} // namespace stage

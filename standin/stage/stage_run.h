// One run of the stage, with everything that it needs. Needs windows.h.
#pragma once

#include "standin/host_sdk/control.h"
#include "standin/stage/box_watch.h"
#include "standin/stage/client_process.h"
#include "standin/stage/command_line.h"
#include "standin/stage/data_folder.h"
#include "standin/stage/dialog_watch.h"
#include "standin/stage/file_fault.h"
#include "standin/stage/frame_window.h"
#include "standin/stage/module_file.h"
#include "standin/stage/scene_source.h"
#include "standin/stage/script_runner.h"
#include "standin/stage/transcript.h"
#include "standin/stage/ui_thread.h"

#include <json/value.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

namespace stage {

// "en" or "zh": the language of the resources that the system loads.
std::string system_language();

class StageRun : private host_sdk::CallRecorder {
public:
    // Both must outlive the run.
    StageRun(const Options& options, const Json::Value& scenario);
    StageRun(const StageRun&) = delete;
    StageRun& operator=(const StageRun&) = delete;

    // Plays the scenario and judges it. Returns the program's exit code.
    int run();

    // Opens the scene for a person and returns when the window is closed. Records nothing.
    int run_for_person();

    // Writes the transcript so far and ends the program with kExitTrouble. From any thread; does not return.
    void give_up(const std::string& trouble);

    // For the steps.
    bool open_scene(const Json::Value& wanted, const Json::Value& analysis, std::string& problem);
    bool start_client(const Json::Value& wanted, std::string& problem);
    int port() const { return client.port() != 0 ? client.port() : silent_port.number(); }
    void place(const std::string& place);
    std::string place();
    void fail(const std::string& place, const std::string& expected, const std::string& got);
    void judge(const Json::Value& expect, const std::string& place);
    void end_of_faults();

    std::wstring out_file(const std::wstring& name) const;
    std::wstring scene_folder() const { return out_file(L"scene"); }

    const Options& options;
    const Json::Value& scenario;
    Json::Value fault; // null outside a sweep
    Transcript transcript;
    FrameWindow frame;
    ModuleFile module;
    StageScripts scripts;
    DataFolder data;
    ClientProcess client;
    SilentPort silent_port;
    PluginLife plugin;
    std::unique_ptr<DialogWatch> dialogs; // these three need the frame window
    std::unique_ptr<BoxWatch> boxes;
    std::unique_ptr<UiThread> ui;

private:
    bool on_call(const char* name, const std::wstring& arguments) override;
    bool prepare(std::string& problem);
    bool prepare_outside(std::string& problem);
    bool load_menus_of_earlier_run(std::string& problem);
    void connect_host();
    void install_fault();
    bool open_module(std::string& problem);
    bool start_plugin(std::string& problem);
    void play();
    void end();
    void gather();
    int report();

    std::wstring out_;
    unsigned long long started_;
    std::size_t blocks_before_ = 0;
    FileFault file_fault_;
    std::mutex place_mutex_;
    std::string place_;
    std::atomic<bool> given_up_{false};
};

} // namespace stage

// The plugin object between its creation and its end, as the host leads it. On the thread of the user
// interface.
#pragma once

#include "standin/stage/module_file.h"
#include "standin/stage/transcript.h"

#include <string>

class GUP;

namespace stage {

class PluginLife {
public:
    PluginLife(const ModuleFile& module, Transcript& transcript) : module_(module), transcript_(transcript) {}

    // Create, Start and, when the plugin wants to be kept, the start-up notification. With `rebuild_menu_bar`
    // the host rebuilds its menu bar between the two, as one version of it does. False: `problem` is a
    // sentence.
    bool start(bool rebuild_menu_bar, std::string& problem);

    // Stop and DeleteThis.
    void stop();

private:
    void record(const char* event, long long result);

    const ModuleFile& module_;
    Transcript& transcript_;
    GUP* plugin_ = nullptr;
};

// The menu bar's lines as the host stand-in describes them.
Json::Value menu_lines();

} // namespace stage

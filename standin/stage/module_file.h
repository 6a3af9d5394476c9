// The plugin module: its file with exports, version resource and texts, and the plugin object. Needs
// windows.h.
#pragma once

#include "standin/stage/transcript.h"

#include <json/value.h>

#include <windows.h>

#include <map>
#include <string>
#include <vector>

class ClassDesc;
class GUP;

namespace stage {

class ModuleFile {
public:
    ModuleFile() = default;
    ~ModuleFile() { unload(); }
    ModuleFile(const ModuleFile&) = delete;
    ModuleFile& operator=(const ModuleFile&) = delete;

    // Returns false and sets `problem` to an error message when the file is not a plugin module of this host.
    bool load(const std::wstring& path, std::string& problem);
    // Calls LibShutdown first.
    void unload();

    HMODULE handle() const { return handle_; }
    ClassDesc* class_descriptor() const; // the one with index 0; null when there is none

    std::wstring text(unsigned number) const;
    // The numbers that have this text in the string table, at least as far as a look-up returns it.
    std::vector<unsigned> numbers_of(const std::wstring& text) const;

    Json::Value texts() const;       // by number
    Json::Value description() const; // file, version, class name

private:
    void read_texts();

    HMODULE handle_ = nullptr;
    std::wstring path_;
    std::map<unsigned, std::wstring> texts_;
};

// The plugin object from its creation to its end, as the host runs it. For the user-interface thread.
class PluginLife {
public:
    PluginLife(const ModuleFile& module, Transcript& transcript) : module_(module), transcript_(transcript) {}

    // Create, Start and, when the plugin asks to be kept, the start-up notification. `rebuild_menu_bar`
    // rebuilds the menu bar between the two, as one version of the host does. Returns false and sets
    // `problem` to an error message.
    bool start(bool rebuild_menu_bar, std::string& problem);

    // Stop and DeleteThis.
    void stop();

private:
    void record(const char* event, long long result);

    const ModuleFile& module_;
    Transcript& transcript_;
    GUP* plugin_ = nullptr;
};

// The menu bar's entries, one in a line.
Json::Value menu_lines();

} // namespace stage

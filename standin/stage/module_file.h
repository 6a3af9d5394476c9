// The plugin module as a file: loading it, its exports, its version resource, its texts. Needs windows.h.
#pragma once

#include <json/value.h>

#include <windows.h>

#include <map>
#include <string>
#include <vector>

class ClassDesc;

namespace stage {

class ModuleFile {
public:
    ModuleFile() = default;
    ~ModuleFile() { unload(); }
    ModuleFile(const ModuleFile&) = delete;
    ModuleFile& operator=(const ModuleFile&) = delete;

    // False: `problem` says why the file is no plugin module of this host.
    bool load(const std::wstring& path, std::string& problem);
    // Calls LibShutdown first.
    void unload();

    HMODULE handle() const { return handle_; }
    ClassDesc* class_descriptor() const; // the one with index 0; null when there is none

    std::wstring text(unsigned number) const;
    // The numbers under which this text, or what a look-up leaves of it, stands in the string table.
    std::vector<unsigned> numbers_of(const std::wstring& text) const;

    Json::Value texts() const;       // by number
    Json::Value description() const; // file, version, exports
    Json::Value class_description() const;

private:
    void read_texts();

    HMODULE handle_ = nullptr;
    std::wstring path_;
    unsigned long library_version_ = 0;
    int class_count_ = 0;
    std::map<unsigned, std::wstring> texts_;
};

} // namespace stage

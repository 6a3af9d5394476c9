// The plugin's folder under the machine-wide application-data folder: prepared before a run, looked through
// after it. Needs windows.h.
#pragma once

#include <json/value.h>

#include <map>
#include <string>

namespace stage {

// What the folder is filled from; an empty name: nothing to copy.
struct DataSources {
    std::wstring seven_zip; // folder with 7z.exe and 7z.dll
    std::wstring scripts;   // folder with the scripts that are installed
};

class DataFolder {
public:
    DataFolder();

    const std::wstring& path() const { return path_; }
    std::wstring ini_file() const;
    std::wstring script_folder() const;

    // Empties what earlier runs left and fills the folder as the scenario's "data_folder" (null: everything
    // there) says. `port` stands in the ini file for "auto". False: `problem` is a sentence.
    bool prepare(const Json::Value& wanted, const DataSources& sources, int port, std::string& problem);

    // Takes the folder as it is installed instead: nothing is emptied, copied or written. False: `problem` is
    // a sentence.
    bool adopt(std::string& problem);

    // The port in an adopted folder's ini file; 0 when the folder was not adopted.
    int adopted_port() const { return adopted_port_; }

    // Writes the ini file again, for another port; an adopted folder keeps its own.
    bool write_ini(const Json::Value& wanted, int port) const;

    // Remembers what lies in `folder` too; its files are listed under "scene/".
    void mark(const std::wstring& scene_folder);

    // Files that came or changed since `mark`: {"name", "size", "json" or "text"}; logs are not among them.
    Json::Value appeared() const;

    // Every channel's lines, oldest first.
    Json::Value logs() const;

private:
    bool copy_seven_zip(bool wanted, const std::wstring& source, std::string& problem) const;
    bool copy_scripts(const Json::Value& wanted, const std::wstring& source, std::string& problem) const;
    void append_new_files(const std::wstring& folder, const std::string& prefix, Json::Value& list) const;

    std::wstring path_;
    int adopted_port_ = 0;
    std::wstring scene_folder_;
    std::map<std::wstring, std::pair<long long, unsigned long long>> before_; // size and time by path
};

} // namespace stage

// The plugin's folder in the machine-wide application-data folder: prepared before a run, searched after it.
// Needs windows.h.
#pragma once

#include <json/value.h>

#include <map>
#include <string>

namespace stage {

// Where programs and scripts are copied from; an empty name: nothing is copied.
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

    // Removes what earlier runs left and fills the folder as the scenario's "data_folder" says (null: a
    // complete installation). `port` is for the ini file. Returns false and sets `problem` to an error
    // message.
    bool prepare(const Json::Value& wanted, const DataSources& sources, int port, std::string& problem);

    // Uses the folder as it is installed and changes nothing in it. Returns false and sets `problem` to an
    // error message.
    bool adopt(std::string& problem);

    // The port in an adopted folder's ini file; 0 when the folder was not adopted.
    int adopted_port() const { return adopted_port_; }

    // Writes the ini file for another port; does not change an adopted folder's.
    bool write_ini(const Json::Value& wanted, int port) const;

    // Remembers the files of this folder and of `scene_folder`, whose files get the prefix "scene/".
    void mark(const std::wstring& scene_folder);

    // New and changed files since `mark`: {"name", "size", "json" or "text"}, without logs.
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

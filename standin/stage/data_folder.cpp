#include "standin/stage/data_folder.h"

#include "standin/base/files_win32.h"
#include "standin/base/json.h"
#include "standin/base/text.h"
#include "standin/base/wildcards.h"
#include "standin/stage/infection.h"
#include "standin/stage/log_lines.h"

#include <windows.h>

#include <algorithm>
#include <vector>

#include <shlobj.h>

namespace stage {

namespace {

constexpr long long kLargestShownFile = 1024 * 1024;
// The second one makes the encrypted form of the first, which is what the plugin loads.
const wchar_t* const kAnalysisScripts[] = {L"MaxRenderGlobalsParser.ms", L"PrepareAnalysisScript.ms"};
const wchar_t* const kVirusScripts[] = {L"TarvoAntivirusAdsl_UTF8.ms", L"TarvoAntivirusAlc_UTF8.ms",
                                        L"TarvoAntivirusCrp_UTF8.ms"};
const wchar_t* const kSevenZipFiles[] = {L"7z.exe", L"7z.dll"};

std::wstring machine_wide_folder() {
    wchar_t folder[MAX_PATH] = {};
    ::SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder);
    return folder;
}

bool is_log_folder(const std::wstring& name) {
    return name.compare(0, 3, L"log") == 0;
}

// Log files are UTF-8 where they are valid UTF-8, else in the simplified-Chinese code page.
std::string log_to_utf8(const std::string& bytes) {
    constexpr UINT log_code_page = 936;
    if (base::is_utf8(bytes)) {
        return bytes;
    }
    const int length = static_cast<int>(bytes.size());
    std::wstring wide(bytes.size(), L'\0'); // no page needs more units than bytes
    const int count = ::MultiByteToWideChar(log_code_page, 0, bytes.data(), length, &wide[0], length);
    wide.resize(static_cast<std::size_t>(count));
    return base::to_utf8(wide);
}

bool is_text(const std::string& content) {
    return content.find('\0') == std::string::npos && base::is_utf8(content);
}

Json::Value describe_file(const base::FileEntry& file, const std::string& name) {
    Json::Value entry(Json::objectValue);
    entry["name"] = name;
    entry["size"] = static_cast<Json::Int64>(file.size);
    std::string content;
    if (file.size > kLargestShownFile || !base::read_file(file.path, content)) {
        return entry;
    }
    const std::string infection = infection_in(content);
    if (!infection.empty()) {
        entry["infection"] = infection;
    }
    if (!is_text(content)) {
        return entry;
    }
    const Json::Value document =
        base::matches_wildcards<std::string>(name, "*.json") ? base::parsed_or_null(content) : Json::Value();
    if (!document.isNull()) {
        entry["json"] = document;
    }
    entry["text"] = content;
    return entry;
}

} // namespace

DataFolder::DataFolder() : path_(base::joined(machine_wide_folder(), L"Tarvo Rendering")) {}

std::wstring DataFolder::ini_file() const {
    return base::joined(script_folder(), L"qfx_plugin.ini");
}

std::wstring DataFolder::script_folder() const {
    return base::joined(path_, L"script");
}

bool DataFolder::write_ini(const Json::Value& wanted, int port) const {
    if (adopted_port_ != 0 || (wanted.isMember("ini") && wanted["ini"].isNull())) {
        return true;
    }
    return base::write_file(
        ini_file(), "[general]\r\nip=127.0.0.1\r\nport=" + std::to_string(port) +
                        "\r\nlowerversion=" + wanted["ini"].get("lowerversion", "1.3.5").asString() + "\r\n");
}

bool DataFolder::copy_seven_zip(bool wanted, const std::wstring& source, std::string& problem) const {
    const std::wstring folder = base::joined(path_, L"7-Zip");
    if (!wanted || source.empty()) {
        return base::remove_tree(folder);
    }
    for (const wchar_t* name : kSevenZipFiles) {
        if (!base::make_folder(folder) || ::CopyFileW(base::joined(source, name).c_str(),
                                                      base::joined(folder, name).c_str(), FALSE) == FALSE) {
            problem = base::to_utf8(base::joined(source, name)) + ": cannot be copied into " +
                      base::to_utf8(folder);
            return false;
        }
    }
    return true;
}

bool DataFolder::copy_scripts(const Json::Value& wanted, const std::wstring& source,
                              std::string& problem) const {
    std::vector<std::wstring> names;
    if (source.empty()) {
        return true;
    }
    if (wanted.get("analysis_script", true).asBool()) {
        names.insert(names.end(), std::begin(kAnalysisScripts), std::end(kAnalysisScripts));
    }
    if (wanted.get("virus_scripts", true).asBool()) {
        names.insert(names.end(), std::begin(kVirusScripts), std::end(kVirusScripts));
    }
    for (const std::wstring& name : names) {
        const std::wstring file = base::joined(source, name);
        if (::CopyFileW(file.c_str(), base::joined(script_folder(), name).c_str(), FALSE) == FALSE) {
            problem = base::to_utf8(file) + ": cannot be copied into " + base::to_utf8(script_folder());
            return false;
        }
    }
    return true;
}

bool DataFolder::prepare(const Json::Value& wanted, const DataSources& sources, int port,
                         std::string& problem) {
    for (const std::wstring& name : base::list_names(path_)) {
        if (is_log_folder(name)) {
            base::remove_tree(base::joined(path_, name));
        }
    }
    for (const wchar_t* name : {L"json", L"compress"}) {
        if (!base::remove_tree(base::joined(path_, name))) {
            problem = base::to_utf8(base::joined(path_, name)) + ": cannot be emptied";
            return false;
        }
    }
    if (!base::remove_tree(script_folder()) || !base::make_folder(script_folder()) ||
        !write_ini(wanted, port)) {
        problem = base::to_utf8(script_folder()) + ": cannot be written";
        return false;
    }
    if (!copy_seven_zip(wanted.get("seven_zip", true).asBool(), sources.seven_zip, problem) ||
        !copy_scripts(wanted, sources.scripts, problem)) {
        return false;
    }
    if (!write_files(wanted["files"], path_)) {
        problem = base::to_utf8(path_) + ": the scenario's files cannot be written";
        return false;
    }
    return true;
}

bool DataFolder::adopt(std::string& problem) {
    const std::wstring source = base::joined(script_folder(), L"MaxRenderGlobalsParser.ms");
    if (!base::file_exists(source)) {
        problem = base::to_utf8(source) + ": is not installed";
        return false;
    }
    adopted_port_ = static_cast<int>(::GetPrivateProfileIntW(L"general", L"port", 0, ini_file().c_str()));
    if (adopted_port_ == 0) {
        problem = base::to_utf8(ini_file()) + ": names no port";
        return false;
    }
    return true;
}

void DataFolder::mark(const std::wstring& scene_folder) {
    scene_folder_ = scene_folder;
    before_.clear();
    for (const std::wstring& folder : {path_, scene_folder_}) {
        for (const base::FileEntry& file : base::list_files(folder)) {
            before_[file.path] = {file.size, file.written};
        }
    }
}

void DataFolder::append_new_files(const std::wstring& folder, const std::string& prefix,
                                  Json::Value& list) const {
    for (const base::FileEntry& file : base::list_files(folder)) {
        const auto known = before_.find(file.path);
        const bool same = known != before_.end() && known->second == std::make_pair(file.size, file.written);
        if (!same && !(prefix.empty() && is_log_folder(base::to_wide(file.name)))) {
            list.append(describe_file(file, prefix + file.name));
        }
    }
}

Json::Value DataFolder::appeared() const {
    Json::Value list(Json::arrayValue);
    append_new_files(path_, std::string(), list);
    if (!scene_folder_.empty()) {
        append_new_files(scene_folder_, "scene/", list);
    }
    return list;
}

Json::Value DataFolder::logs() const {
    std::vector<base::FileEntry> files;
    for (const base::FileEntry& file : base::list_files(path_)) {
        if (is_log_folder(base::to_wide(file.name))) {
            files.push_back(file);
        }
    }
    // The older a channel's file, the higher its number; the current one has none.
    std::sort(files.begin(), files.end(), [](const base::FileEntry& one, const base::FileEntry& other) {
        return one.name.size() != other.name.size() ? one.name.size() > other.name.size()
                                                    : one.name > other.name;
    });
    Json::Value channels(Json::objectValue);
    for (const base::FileEntry& file : files) {
        std::string content;
        const std::string channel = log_channel(base::to_utf8(base::name_of(file.path)));
        if (!channel.empty() && base::read_file(file.path, content)) {
            for (const Json::Value& line : parse_log(log_to_utf8(content))) {
                channels[channel].append(line);
            }
        }
    }
    return channels;
}

} // namespace stage

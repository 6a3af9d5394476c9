#include "standin/stage/scene_source.h"

#include "standin/base/files_win32.h"
#include "standin/base/text.h"
#include "standin/max_file/scene_file_win32.h"
#include "standin/stage/infection.h"
#include "standin/stage/scene_literal.h"

#include <windows.h>

namespace stage {

namespace {

bool read_model(const std::wstring& file, max_file::SceneModel& model, std::string& problem) {
    std::wstring reason;
    if (!base::file_exists(file)) {
        problem = base::to_utf8(file) + ": there is no such scene file";
        return false;
    }
    if (!max_file::open_scene_file(file, model, reason)) {
        problem = base::to_utf8(reason);
        return false;
    }
    return true;
}

// Makes the file as large as wanted, with bytes that do not pack well.
bool grow_file(const std::wstring& path, long long kilobytes) {
    std::string content;
    if (kilobytes <= 0 || !base::read_file(path, content)) {
        return kilobytes <= 0;
    }
    unsigned long long noise = 1;
    while (content.size() < static_cast<std::size_t>(kilobytes) * 1024) {
        noise = noise * 6364136223846793005ULL + 1442695040888963407ULL;
        content += static_cast<char>(noise >> 56);
    }
    return base::write_file(path, content);
}

bool write_literal(const Json::Value& wanted, const std::wstring& folder, StageScene& scene,
                   std::string& problem) {
    scene.literal = wanted;
    scene.model = literal_model(wanted);
    scene.needs_save = wanted.get("needs_save", false).asBool();
    scene.startup_folder = base::joined(folder, L"startup");
    if (!write_startup_files(wanted["infection"]["startup_files"], scene.startup_folder)) {
        problem = base::to_utf8(scene.startup_folder) + ": cannot be written";
        return false;
    }
    if (wanted.get("unsaved", false).asBool()) {
        return true;
    }
    const std::wstring path =
        base::joined(folder, base::to_wide(wanted.get("file_name", "scene.max").asString()));
    std::wstring reason;
    if (!max_file::write_scene_file(scene.model, path, reason)) {
        problem = base::to_utf8(reason);
        return false;
    }
    if (!grow_file(path, wanted.get("size_kb", 0).asInt64())) {
        problem = base::to_utf8(path) + ": cannot be written";
        return false;
    }
    scene.model.path = path;
    return true;
}

bool copy_into(const std::wstring& folder, const std::wstring& file, std::wstring& copy,
               std::string& problem) {
    copy = base::joined(folder, base::name_of(file));
    if (::CopyFileW(file.c_str(), copy.c_str(), FALSE) == FALSE) {
        problem = base::to_utf8(file) + ": cannot be copied to " + base::to_utf8(copy);
        return false;
    }
    ::SetFileAttributesW(copy.c_str(), FILE_ATTRIBUTE_NORMAL);
    return true;
}

bool is_absolute(const std::wstring& path) {
    return !path.empty() && (path[0] == L'\\' || path[0] == L'/' || (path.size() > 1 && path[1] == L':'));
}

} // namespace

bool open_scene(const std::wstring& file, StageScene& scene, std::string& problem) {
    if (!read_model(file, scene.model, problem)) {
        return false;
    }
    scene.model.path = base::absolute_path(file);
    return true;
}

bool prepare_scene(const Json::Value& wanted, const std::wstring& base, const std::wstring& given,
                   const std::wstring& folder, StageScene& scene, std::string& problem) {
    scene = StageScene();
    if (wanted.isMember("literal")) {
        return write_literal(wanted["literal"], folder, scene, problem);
    }
    std::wstring file = given;
    if (wanted.isMember("file")) {
        file = base::to_wide(wanted["file"].asString());
        file = is_absolute(file) ? file : base::joined(base, file);
    }
    if (wanted.isMember("from_command_line") && given.empty()) {
        problem = "the scenario takes its scene from the command line, and no --scene is given";
        return false;
    }
    if (!wanted.isObject()) {
        return true;
    }
    // The open scene is the copy, so that the analysis names the file that will be packed.
    file = base::absolute_path(file);
    std::wstring copy;
    if (!read_model(file, scene.model, problem) || !copy_into(folder, file, copy, problem)) {
        return false;
    }
    scene.model.path = copy;
    return true;
}

} // namespace stage

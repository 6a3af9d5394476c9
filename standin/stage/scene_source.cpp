#include "standin/stage/scene_source.h"

#include "standin/scene/analysis_text.h"
#include "standin/scene/scene_file_win32.h"
#include "standin/scene/scene_writer_win32.h"
#include "standin/stage/files.h"
#include "standin/stage/json_read.h"
#include "standin/stage/wide_text.h"

#include <json/writer.h>

namespace stage {

namespace {

bool read_model(const std::wstring& file, standin::SceneModel& model, std::string& problem) {
    std::wstring reason;
    if (!file_exists(file)) {
        problem = to_utf8(file) + ": there is no such scene file";
        return false;
    }
    if (!standin::open_scene_file(file, model, reason)) {
        problem = to_utf8(reason);
        return false;
    }
    return true;
}

std::vector<std::wstring> wide_list(const Json::Value& texts) {
    std::vector<std::wstring> list;
    for (const Json::Value& text : texts) {
        list.push_back(to_wide(text.asString()));
    }
    return list;
}

void take_references(const Json::Value& paths, bool found, standin::SceneModel& model) {
    for (const std::wstring& path : wide_list(paths)) {
        model.references.push_back({L"Bitmap", path, found ? path : std::wstring()});
    }
}

void take_render_settings(const Json::Value& wanted, standin::RenderSettings& render) {
    render.gamma_out = wanted.get("gamma_out", render.gamma_out).asDouble();
    render.is_region = wanted.get("is_region", false).asBool();
    render.image_format = to_wide(wanted.get("image_format", to_utf8(render.image_format)).asString());
    for (const Json::Value& code : wanted["error_codes"]) {
        render.error_codes.push_back(code.asString());
    }
    if (wanted.isMember("corona")) {
        const Json::Value& corona = wanted["corona"];
        render.corona = {true, corona["pass_limit"].asInt(), corona["time_limit"].asInt(),
                         corona["noise_level_limit"].asDouble()};
    }
    if (wanted.isMember("vray")) {
        const Json::Value& vray = wanted["vray"];
        render.vray = {true, vray.get("camera_override_fov", false).asBool(),
                       vray.get("camera_fov", 45.0).asDouble(), vray.get("is_spherical", false).asBool()};
    }
}

standin::SceneModel literal_model(const Json::Value& wanted) {
    standin::SceneModel model;
    model.version = L"21.0";
    model.app_version = L"2019";
    model.cameras = wide_list(wanted["cameras"]);
    model.width = wanted.get("width", model.width).asInt();
    model.height = wanted.get("height", model.height).asInt();
    model.start_frame = wanted.get("start_frame", model.start_frame).asInt();
    model.end_frame = wanted.get("end_frame", model.end_frame).asInt();
    take_references(wanted["references"], true, model);
    take_references(wanted["missing"], false, model);
    take_render_settings(wanted, model.render);
    return model;
}

// Makes the file as large as wanted, with bytes that do not pack well.
bool grow_file(const std::wstring& path, long long kilobytes) {
    std::string content;
    if (kilobytes <= 0 || !read_file(path, content)) {
        return kilobytes <= 0;
    }
    unsigned long long noise = 1;
    while (content.size() < static_cast<std::size_t>(kilobytes) * 1024) {
        noise = noise * 6364136223846793005ULL + 1442695040888963407ULL;
        content += static_cast<char>(noise >> 56);
    }
    return write_file(path, content);
}

bool write_literal(const Json::Value& wanted, const std::wstring& folder, StageScene& scene,
                   std::string& problem) {
    standin::SceneModel model = literal_model(wanted);
    scene.needs_save = wanted.get("needs_save", false).asBool();
    if (!wanted.get("unsaved", false).asBool()) {
        scene.path = joined(folder, to_wide(wanted.get("file_name", "scene.max").asString()));
        std::wstring reason;
        if (!standin::write_scene_file(model, scene.path, reason)) {
            problem = to_utf8(reason);
            return false;
        }
        if (!grow_file(scene.path, wanted.get("size_kb", 0).asInt64())) {
            problem = to_utf8(scene.path) + ": cannot be written";
            return false;
        }
    }
    model.path = scene.path;
    scene.composed =
        standin::analysis_text(model, [](const std::wstring& path) { return file_exists(path); });
    return true;
}

bool copy_into(const std::wstring& folder, StageScene& scene, std::string& problem) {
    const std::wstring copy = joined(folder, name_of(scene.path));
    if (::CopyFileW(scene.path.c_str(), copy.c_str(), FALSE) == FALSE) {
        problem = to_utf8(scene.path) + ": cannot be copied to " + to_utf8(copy);
        return false;
    }
    ::SetFileAttributesW(copy.c_str(), FILE_ATTRIBUTE_NORMAL);
    scene.path = copy;
    return true;
}

bool is_absolute(const std::wstring& path) {
    return !path.empty() && (path[0] == L'\\' || path[0] == L'/' || (path.size() > 1 && path[1] == L':'));
}

// "remove" takes members away, "merge" sets them; inside an object members are merged one by one.
void merge_into(Json::Value& target, const Json::Value& members) {
    for (const std::string& key : members.getMemberNames()) {
        if (target[key].isObject() && members[key].isObject()) {
            merge_into(target[key], members[key]);
        } else {
            target[key] = members[key];
        }
    }
}

// In a scenario's own analysis the text {scene} stands for the path of the scene file.
void fill_in_scene(Json::Value& value, const std::string& path) {
    const std::string mark = "{scene}";
    if (value.isString()) {
        const std::string text = value.asString();
        const std::size_t at = text.find(mark);
        value = at == std::string::npos ? text : text.substr(0, at) + path + text.substr(at + mark.size());
    } else if (value.isArray() || value.isObject()) {
        for (Json::Value& member : value) {
            fill_in_scene(member, path);
        }
    }
}

std::wstring wide_json(Json::Value document, const StageScene& scene) {
    fill_in_scene(document, to_utf8(scene.path));
    return to_wide(Json::writeString(Json::StreamWriterBuilder(), document));
}

std::wstring edited(const Json::Value& wanted, const StageScene& scene) {
    if (!wanted.isMember("merge") && !wanted.isMember("remove")) {
        return to_wide(scene.composed);
    }
    Json::Value document =
        scene.composed.empty() ? Json::Value(Json::objectValue) : parsed_or_null(scene.composed);
    for (const Json::Value& key : wanted["remove"]) {
        document.removeMember(key.asString());
    }
    merge_into(document, wanted.isMember("merge") ? wanted["merge"] : Json::Value(Json::objectValue));
    return wide_json(document, scene);
}

} // namespace

bool open_scene(const std::wstring& file, StageScene& scene, std::string& problem) {
    standin::SceneModel model;
    if (!read_model(file, model, problem)) {
        return false;
    }
    model.path = absolute_path(file);
    scene.path = model.path;
    scene.composed =
        standin::analysis_text(model, [](const std::wstring& path) { return file_exists(path); });
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
        file = to_wide(wanted["file"].asString());
        file = is_absolute(file) ? file : joined(base, file);
    }
    if (wanted.isMember("from_command_line") && given.empty()) {
        problem = "the scenario takes its scene from the command line, and no --scene is given";
        return false;
    }
    if (!wanted.isObject()) {
        return true;
    }
    // The copy is read, so that the analysis names the file that will be packed.
    standin::SceneModel model;
    if (!read_model(absolute_path(file), model, problem)) {
        return false;
    }
    scene.path = absolute_path(file);
    if (!copy_into(folder, scene, problem)) {
        return false;
    }
    model.path = scene.path;
    scene.composed =
        standin::analysis_text(model, [](const std::wstring& path) { return file_exists(path); });
    return true;
}

AnalysisAnswer analysis_answer(const Json::Value& wanted, const StageScene& scene) {
    AnalysisAnswer answer;
    answer.fails = wanted.get("fails", false).asBool();
    answer.has_text = !wanted.get("no_text", false).asBool();
    if (wanted.isMember("text")) {
        answer.text = to_wide(wanted["text"].asString());
    } else if (wanted.isMember("document")) {
        answer.text = wide_json(wanted["document"], scene);
    } else {
        answer.text = edited(wanted, scene);
    }
    return answer;
}

} // namespace stage

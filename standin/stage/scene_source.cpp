#include "standin/stage/scene_source.h"

#include "standin/base/files_win32.h"
#include "standin/base/text.h"
#include "standin/max_file/scene_file_win32.h"
#include "standin/stage/infection.h"

#include <windows.h>

namespace stage {

namespace {

using max_file::FrameChoice;
using max_file::RendererSettings;
using max_file::RenderSettings;
using max_file::SceneModel;

constexpr const wchar_t* kVrayClass = L"V_Ray_Adv_3_60_03";
constexpr const wchar_t* kCoronaClass = L"CoronaRenderer";
constexpr const wchar_t* kOutputWithoutEnding = L"C:\\renders\\picture.";
constexpr int kSphericalCamera = 9; // V-Ray's number for the spherical panorama
constexpr double kUsualFov = 45.0;

std::wstring wide(const Json::Value& text) {
    return base::to_wide(text.asString());
}

// A name, or an object with "name" and "class".
void take_cameras(const Json::Value& cameras, SceneModel& model) {
    for (const Json::Value& camera : cameras) {
        const bool has_class = camera.isObject();
        model.cameras.push_back(wide(has_class ? camera["name"] : camera));
        model.camera_classes.push_back(has_class ? wide(camera["class"]) : L"Freecamera");
    }
}

void take_references(const Json::Value& paths, bool found, SceneModel& model) {
    for (const Json::Value& path : paths) {
        model.references.push_back({L"Bitmap", wide(path), found ? wide(path) : std::wstring()});
    }
}

void take_frames(const Json::Value& wanted, SceneModel& model) {
    RenderSettings& render = model.render;
    model.start_frame = wanted.get("start_frame", model.start_frame).asInt();
    model.end_frame = wanted.get("end_frame", model.end_frame).asInt();
    render.frames = wanted["frames"] == "picked" ? FrameChoice::picked : FrameChoice::active_segment;
    render.picked_frames = wide(wanted.get("picked_frames", base::to_utf8(render.picked_frames)));
}

// The two renderers by their limits and overrides, or any renderer by its class and properties.
void take_renderer(const Json::Value& wanted, RendererSettings& renderer) {
    Json::Value& properties = renderer.properties;
    if (wanted.isMember("corona")) {
        renderer.class_name = kCoronaClass;
        properties["progressive_passLimit"] = wanted["corona"]["pass_limit"];
        properties["progressive_timeLimit"] = wanted["corona"]["time_limit"];
        properties["adaptivity_targetError"] = wanted["corona"]["noise_level_limit"].asDouble();
    }
    if (wanted.isMember("vray")) {
        const Json::Value& vray = wanted["vray"];
        renderer.class_name = kVrayClass;
        properties["camera_overrideFOV"] = vray.get("camera_override_fov", false);
        properties["camera_fov"] = vray.get("camera_fov", kUsualFov).asDouble();
        properties["camera_type"] = vray.get("is_spherical", false).asBool() ? kSphericalCamera : 0;
    }
    if (wanted.isMember("renderer")) {
        const Json::Value& given = wanted["renderer"];
        renderer.class_name = wide(given["class"]);
        renderer.nested = given.get("nested", false).asBool();
        properties = given.get("properties", Json::Value(Json::objectValue));
    }
}

void take_picture(const Json::Value& wanted, SceneModel& model) {
    RenderSettings& render = model.render;
    model.width = wanted.get("width", model.width).asInt();
    model.height = wanted.get("height", model.height).asInt();
    render.gamma_out = wanted.get("gamma_out", render.gamma_out).asDouble();
    render.kind = wanted.get("is_region", false).asBool() ? L"region" : render.kind;
    if (wanted.isMember("image_format")) {
        render.output_file = kOutputWithoutEnding + wide(wanted["image_format"]);
    }
    render.output_file = wide(wanted.get("output_file", base::to_utf8(render.output_file)));
}

// The model of the scene that a scenario's "literal" describes.
SceneModel literal_model(const Json::Value& wanted) {
    SceneModel model;
    model.version = L"21.0";
    model.app_version = L"2019";
    take_cameras(wanted["cameras"], model);
    for (const Json::Value& target : wanted["camera_targets"]) {
        model.camera_targets.push_back(wide(target));
    }
    take_picture(wanted, model);
    take_frames(wanted, model);
    take_renderer(wanted, model.render.renderer);
    take_references(wanted["references"], true, model);
    take_references(wanted["missing"], false, model);
    return model;
}

// Makes the file as large as wanted, with bytes that do not compress well.
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
    if (!write_files(wanted["infection"]["startup_files"], scene.startup_folder)) {
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

// The open scene is the copy, so that the analysis names the file that is packed.
bool open_copy(const std::wstring& file, const std::wstring& folder, StageScene& scene,
               std::string& problem) {
    std::wstring reason;
    if (!base::file_exists(file)) {
        problem = base::to_utf8(file) + ": there is no such scene file";
        return false;
    }
    if (!max_file::open_scene_file(file, scene.model, reason)) {
        problem = base::to_utf8(reason);
        return false;
    }
    const std::wstring copy = base::joined(folder, base::name_of(file));
    if (::CopyFileW(file.c_str(), copy.c_str(), FALSE) == FALSE) {
        problem = base::to_utf8(file) + ": cannot be copied to " + base::to_utf8(copy);
        return false;
    }
    ::SetFileAttributesW(copy.c_str(), FILE_ATTRIBUTE_NORMAL);
    scene.model.path = copy;
    return true;
}

} // namespace

bool prepare_scene(const Json::Value& wanted, const std::wstring& given, const std::wstring& folder,
                   StageScene& scene, std::string& problem) {
    scene = StageScene();
    if (wanted.isMember("literal")) {
        return write_literal(wanted["literal"], folder, scene, problem);
    }
    if (given.empty()) {
        problem = "the scenario takes its scene from the command line, and no --scene is given";
        return false;
    }
    return open_copy(base::absolute_path(given), folder, scene, problem);
}

} // namespace stage

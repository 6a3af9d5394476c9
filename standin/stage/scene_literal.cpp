#include "standin/stage/scene_literal.h"

#include "standin/base/text.h"

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

} // namespace

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

} // namespace stage

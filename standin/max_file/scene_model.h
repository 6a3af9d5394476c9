// A scene: the contents of a .max file, and the render settings, which no .max file contains and which have
// these defaults unless a scenario sets them. A plain record; wide texts are UTF-16.
#pragma once

#include <json/value.h>

#include <cstdint>
#include <string>
#include <vector>

namespace max_file {

struct ReferencedFile {
    std::wstring kind;  // "Bitmap", "XRef", ...
    std::wstring named; // path as the scene names it
    std::wstring found; // path at which it was found when the scene was saved; empty: nowhere
};

// The production renderer. Its settings depend on the build, so they are a list: flags, whole numbers,
// numbers and texts by name.
struct RendererSettings {
    std::wstring class_name; // empty: made from SceneModel::renderer
    Json::Value properties = Json::Value(Json::objectValue);
    bool nested = false; // the settings are one level down, in the property V_Ray_settings
};

// Which frames are rendered, as the host numbers the choices.
enum class FrameChoice : std::int32_t { single = 1, active_segment = 2, range = 3, picked = 4 };

// None of this is read from a scene file.
struct RenderSettings {
    double gamma_out = 2.2;
    std::wstring gamma_mode = L"gamma"; // "none": gamma is switched off
    std::wstring kind = L"view";        // of rendering: "view", "region", "crop", "blowUp", ...
    std::wstring output_file;           // empty: the picture is not saved
    FrameChoice frames = FrameChoice::active_segment;
    std::int32_t current_frame = 0;
    std::int32_t range_start = 0; // FrameChoice::range
    std::int32_t range_end = 100;
    std::wstring picked_frames = L"1,3,5-12"; // FrameChoice::picked
    RendererSettings renderer;
};

constexpr std::int32_t kDefaultWidth = 640;
constexpr std::int32_t kDefaultHeight = 480;
constexpr std::int32_t kCameraCountUnknown = -1;

struct SceneModel {
    std::wstring path;        // full path; empty for a scene that was never saved
    std::wstring version;     // of the host that saved it, "21.0"; empty when the file does not say
    std::wstring app_version; // the same as the year in the product's name, "2019"
    std::wstring renderer;    // name of the production renderer

    std::vector<std::wstring> cameras;        // in scene order
    std::vector<std::wstring> camera_classes; // by camera, "Freecamera" where none is given
    std::vector<std::wstring> camera_targets; // the nodes that cameras look at
    std::int32_t width = kDefaultWidth;
    std::int32_t height = kDefaultHeight;
    std::int32_t start_frame = 0; // of the animation
    std::int32_t end_frame = 0;

    // The cameras as the file's summary lists them.
    std::int32_t summary_camera_count = kCameraCountUnknown;
    std::vector<std::wstring> render_cameras;

    std::vector<ReferencedFile> references;
    RenderSettings render;

    // Oddities of a usable file: English sentences.
    std::vector<std::wstring> notes;
};

} // namespace max_file

// What the stage knows of a scene: the part a .max file holds, and the render settings it does not hold,
// which keep the defaults stated here unless a scenario says otherwise. A plain record; wide texts are
// UTF-16.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace standin {

struct ReferencedFile {
    std::wstring kind;  // "Bitmap", "XRef", ...
    std::wstring named; // path as the scene names it
    std::wstring found; // path at which it was found when the scene was saved; empty: nowhere
};

// Limits of a progressive render; 0: unlimited.
struct CoronaSettings {
    bool present = false; // false: the scene is not set up for this renderer
    std::int32_t pass_limit = 0;
    std::int32_t time_limit = 0; // milliseconds
    double noise_level_limit = 0.0;
};

struct VraySettings {
    bool present = false;
    bool camera_override_fov = false;
    double camera_fov = 45.0; // degrees
    bool is_spherical = false;
};

// None of this is read from a scene file.
struct RenderSettings {
    double gamma_out = 2.2;
    bool is_region = false;
    std::wstring image_format = L"jpg";
    CoronaSettings corona;
    VraySettings vray;
    std::vector<std::string> error_codes;
};

constexpr std::int32_t kDefaultWidth = 640;
constexpr std::int32_t kDefaultHeight = 480;
constexpr std::int32_t kCameraCountUnknown = -1;

struct SceneModel {
    std::wstring path;        // full path; empty for a scene that was never saved
    std::wstring version;     // of the host that saved it, "21.0"; empty when the file does not say
    std::wstring app_version; // the same as the year in the product's name, "2019"
    std::wstring renderer;    // name of the production renderer

    std::vector<std::wstring> cameras; // in scene order
    std::int32_t width = kDefaultWidth;
    std::int32_t height = kDefaultHeight;
    std::int32_t start_frame = 0;
    std::int32_t end_frame = 0;

    // The file's summary is a second witness for the cameras.
    std::int32_t summary_camera_count = kCameraCountUnknown;
    std::vector<std::wstring> render_cameras;

    std::vector<ReferencedFile> references;
    RenderSettings render;

    // What is odd about the file without making it unusable: English sentences.
    std::vector<std::wstring> notes;
};

} // namespace standin

// What the plugin knows of one camera of the scene.
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace tarvo {

struct CameraRecord {
    std::int32_t image_width = 0; // pixels
    std::int32_t image_height = 0;
    std::int32_t start_frame = 1;
    std::wstring image_format; // upper case
    bool checked = false;      // ticked for rendering
    std::wstring img_output_name;
    bool is_spherical = false; // renders a full 360-degree image
};

// Keyed by the camera's name in the scene, in ascending order of UTF-16 code units: the order of the camera
// table.
using CameraMap = std::map<std::wstring, CameraRecord>;

} // namespace tarvo

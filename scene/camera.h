// A camera of the scene: its record, the names made from its scene name, the rule for submitting it.
#pragma once

#include "common/logger.h"

#include <cstddef>
#include <cstdint>
#include <functional>
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

// By the camera's name in the scene, in the order of UTF-16 code units, which is the order of the camera
// table.
using CameraMap = std::map<std::wstring, CameraRecord>;

// Longer names are cut to this many UTF-16 units, never inside a surrogate pair.
constexpr std::size_t kMaxCameraName = 259;

struct CameraName {
    bool has_bad_ending = false; // a blank or a full stop: the scene cannot be submitted
    bool has_forbidden_characters = false;
    std::wstring key;         // without blanks at both ends
    std::wstring output_name; // the key; with forbidden characters: the whole name without them
};

// `name` is UTF-8.
CameraName SplitCameraName(const std::string& name);

// False for an empty name, a blank at an end, a full stop at the end, or one of kForbiddenNameCharacters.
bool IsUsableCameraName(const std::wstring& name);

// One row of the camera table as the user sees it.
struct CameraRow {
    std::wstring text;        // column 0
    unsigned state_image = 0; // kClearBox or kTickedBox; 0 for a row that does not exist
};
constexpr unsigned kClearBox = 1;
constexpr unsigned kTickedBox = 2;

enum class CameraCheck : std::int32_t { valid = 0, negative_frame = 1, bad_name = 2, none_checked = 3 };

// Carries the tick of every row into `cameras` (adding a default record for an unknown name) and stops at the
// first ticked row that breaks the rule; rows after it keep their ticks. Calls `row` in order, once for each
// index. Logs one line.
CameraCheck CheckCameras(const std::function<CameraRow(int index)>& row, CameraMap& cameras, Logger& log);

} // namespace tarvo

// What a camera's name in the scene becomes in the store.
#pragma once

#include <cstddef>
#include <string>

namespace tarvo {

// Longer names are cut here, counted in UTF-16 units and never inside a surrogate pair.
constexpr std::size_t kMaxCameraName = 259;

struct CameraName {
    bool has_bad_ending = false; // a blank or a full stop: the scene cannot be submitted
    bool has_forbidden_characters = false;
    std::wstring key;         // blanks at both ends are gone
    std::wstring output_name; // the key; with forbidden characters: the whole name without them
};

// `name` is UTF-8.
CameraName SplitCameraName(const std::string& name);

} // namespace tarvo

#include "scene/camera_name.h"

#include "common/text.h"

namespace tarvo {

namespace {

bool is_high_surrogate(wchar_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

void cut(std::wstring& name) {
    if (name.size() > kMaxCameraName) {
        name.resize(is_high_surrogate(name[kMaxCameraName - 1]) ? kMaxCameraName - 1 : kMaxCameraName);
    }
}

} // namespace

CameraName SplitCameraName(const std::string& name) {
    CameraName result;
    std::wstring whole = Utf8ToWide(name);
    cut(whole);
    if (!whole.empty() && (whole.back() == L' ' || whole.back() == L'.')) {
        result.has_bad_ending = true;
        return result;
    }
    result.key = TrimSpaces(whole);
    result.has_forbidden_characters = ContainsAnyOf(result.key, kForbiddenNameCharacters) != 0;
    // Removed from the untrimmed name: a leading blank stays (C-23).
    result.output_name =
        result.has_forbidden_characters ? RemoveChars(whole, kForbiddenNameCharacters) : result.key;
    return result;
}

} // namespace tarvo

#include "scene/camera.h"

#include "common/text.h"

namespace tarvo {

namespace {

struct CheckLine {
    CameraCheck result;
    const char* text;
    const char* level;
};

constexpr CheckLine kLines[] = {
    {CameraCheck::valid, "The information of cameras to be submit is valid.", kInfo},
    {CameraCheck::negative_frame, "The parameter frame to render is less than 0!", kError},
    {CameraCheck::bad_name, "The camera names to render contain invalid characters or empty!", kError},
    {CameraCheck::none_checked, "No camera checked!", kError},
};

void cut(std::wstring& name) {
    if (name.size() > kMaxCameraName) {
        const wchar_t last = name[kMaxCameraName - 1];
        const bool splits_a_pair = last >= 0xD800 && last <= 0xDBFF;
        name.resize(splits_a_pair ? kMaxCameraName - 1 : kMaxCameraName);
    }
}

CameraCheck check_rows(const std::function<CameraRow(int)>& row_at, CameraMap& cameras) {
    bool any_checked = false;
    // Take the count before the loop: an unknown row inserts a camera.
    const int count = static_cast<int>(cameras.size());
    for (int index = 0; index < count; ++index) {
        const CameraRow row = row_at(index);
        CameraRecord& record = cameras[row.text];
        record.checked = row.state_image != kClearBox;
        if (!record.checked) {
            continue;
        }
        any_checked = true;
        if (record.start_frame < 0) {
            return CameraCheck::negative_frame;
        }
        if (!IsUsableCameraName(row.text)) {
            return CameraCheck::bad_name;
        }
    }
    return any_checked ? CameraCheck::valid : CameraCheck::none_checked;
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

bool IsUsableCameraName(const std::wstring& name) {
    return !name.empty() && name.front() != L' ' && name.back() != L' ' && name.back() != L'.' &&
           ContainsAnyOf(name, kForbiddenNameCharacters) == 0;
}

CameraCheck CheckCameras(const std::function<CameraRow(int index)>& row, CameraMap& cameras, Logger& log) {
    const CameraCheck result = check_rows(row, cameras);
    for (const CheckLine& line : kLines) {
        if (line.result == result) {
            log.Write(line.text, line.level);
        }
    }
    return result;
}

} // namespace tarvo

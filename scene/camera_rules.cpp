#include "scene/camera_rules.h"

#include "common/logger.h"
#include "common/text.h"

namespace tarvo {

namespace {

constexpr unsigned kClearBox = 1; // state image

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

CameraCheck check_rows(CameraRows& rows, CameraMap& cameras) {
    bool any_checked = false;
    // The rows are counted by the collection as it was at the start: an unknown row adds to it.
    const std::size_t count = cameras.size();
    for (std::size_t index = 0; index < count; ++index) {
        const CameraRow row = rows.row(index);
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

bool IsUsableCameraName(const std::wstring& name) {
    return !name.empty() && name.front() != L' ' && name.back() != L' ' && name.back() != L'.' &&
           ContainsAnyOf(name, kForbiddenNameCharacters) == 0;
}

CameraCheck CheckCameras(CameraRows& rows, CameraMap& cameras, Logger& log) {
    const CameraCheck result = check_rows(rows, cameras);
    for (const CheckLine& line : kLines) {
        if (line.result == result) {
            log.Write(line.text, line.level);
        }
    }
    return result;
}

} // namespace tarvo

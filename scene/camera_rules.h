// The rule for the cameras that are to be submitted, apart from the list view that shows them.
#pragma once

#include "common/logger.h"
#include "scene/camera_record.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace tarvo {

// One row of the camera table as the user sees it.
struct CameraRow {
    std::wstring text;        // column 0
    unsigned state_image = 0; // 1: the box is clear, 2: it is ticked
};

// Where the rows come from; asked once for each row, in order.
class CameraRows {
public:
    virtual ~CameraRows() = default;
    virtual CameraRow row(std::size_t index) = 0;
};

enum class CameraCheck : std::int32_t { valid = 0, negative_frame = 1, bad_name = 2, none_checked = 3 };

// True when the text can be a camera's name and file name: not empty, no blank at either end, no full stop at
// the end, none of kForbiddenNameCharacters.
bool IsUsableCameraName(const std::wstring& name);

// Carries every row's tick into `cameras` (adding a default record for an unknown name) and stops at the
// first ticked row that breaks the rule; rows after it keep their ticks. Writes one line to `log`.
CameraCheck CheckCameras(CameraRows& rows, CameraMap& cameras, Logger& log);

} // namespace tarvo

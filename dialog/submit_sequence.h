// The one place where a submission is driven from start to end.
#pragma once

#include "common/window_handle.h"

namespace tarvo {

// 1 when every step ran, 0 without a scene file or task id, -1 after every other stop.
int RunSubmitSequence(WindowHandle dialog);

} // namespace tarvo

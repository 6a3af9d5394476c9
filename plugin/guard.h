// The edge between the host and the plugin: everything that the host calls runs inside GuardedCall, so that
// no exception leaves for the host. One that arrives here is a defect; it leaves one line in the log
// "qfx_data".
#pragma once

#include "scene/scene_data.h"

#include <string>

namespace tarvo {

inline void ReportException(const char* where) noexcept {
    try {
        SceneData::instance().log().Write(std::string("An exception was stopped in ") + where + ".", kError);
    } catch (...) { // the log itself may be what does not work
    }
}

template <class Result, class Function>
Result GuardedCall(const char* where, Result otherwise, Function function) noexcept {
    try {
        return function();
    } catch (...) {
        ReportException(where);
        return otherwise;
    }
}

} // namespace tarvo

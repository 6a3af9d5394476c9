// Says when to end: on Ctrl-C, when the stop file appears, or when a caller asks for it. Every wait in the
// client goes through here, so that none outlasts the end.
#pragma once

#include "common/win32_handles.h"

#include <string>

namespace client {

class StopSignal {
public:
    // `stop_file` may be empty. One signal at a time answers to Ctrl-C.
    explicit StopSignal(const std::wstring& stop_file);
    ~StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    void request();
    bool requested() { return wait(0); }

    // True as soon as the end was requested, false when the time has passed.
    bool wait(unsigned milliseconds);

private:
    std::wstring stop_file_;
    tarvo::KernelHandle event_;
};

} // namespace client

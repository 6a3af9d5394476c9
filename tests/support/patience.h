// Waiting for what another program or the system does in its own time: by asking again, up to a limit that
// only a machine in trouble reaches.
#pragma once

#include <windows.h>

namespace support {

constexpr DWORD kPatienceMs = 60000;

// Asks until the answer is true; false when the patience is over.
template <typename Condition>
bool eventually(const Condition& holds, DWORD patience_ms = kPatienceMs) {
    constexpr DWORD kAskEveryMs = 20;
    for (DWORD waited = 0; waited < patience_ms; waited += kAskEveryMs) {
        if (holds()) {
            return true;
        }
        ::Sleep(kAskEveryMs);
    }
    return holds();
}

} // namespace support

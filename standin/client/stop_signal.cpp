#include "standin/client/stop_signal.h"

#include "standin/base/files_win32.h"

#include <algorithm>
#include <atomic>

namespace client {

namespace {

constexpr unsigned kLookAtStopFileEveryMs = 50;

// A console handler has no parameter of its own and runs on its own thread.
std::atomic<HANDLE> g_ctrl_c_event(nullptr);

BOOL WINAPI on_console_control(DWORD) {
    const HANDLE event = g_ctrl_c_event.load();
    return event != nullptr && ::SetEvent(event) != 0 ? TRUE : FALSE;
}

} // namespace

StopSignal::StopSignal(const std::wstring& stop_file)
    : stop_file_(stop_file), event_(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    g_ctrl_c_event.store(event_.get());
    ::SetConsoleCtrlHandler(on_console_control, TRUE);
}

StopSignal::~StopSignal() {
    ::SetConsoleCtrlHandler(on_console_control, FALSE);
    g_ctrl_c_event.store(nullptr);
}

void StopSignal::request() {
    ::SetEvent(event_.get());
}

bool StopSignal::wait(unsigned milliseconds) {
    const ULONGLONG end = ::GetTickCount64() + milliseconds;
    for (;;) {
        if (!stop_file_.empty() && base::file_exists(stop_file_)) {
            request();
        }
        const ULONGLONG now = ::GetTickCount64();
        const ULONGLONG left = now < end ? end - now : 0;
        const DWORD slice = static_cast<DWORD>(std::min<ULONGLONG>(left, kLookAtStopFileEveryMs));
        if (::WaitForSingleObject(event_.get(), slice) == WAIT_OBJECT_0) {
            return true;
        }
        if (left <= slice) {
            return false;
        }
    }
}

} // namespace client

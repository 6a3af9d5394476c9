#include "standin/stage/ui_thread.h"

#include "common/win32_handles.h"

#include <memory>
#include <utility>

namespace stage {

namespace {

struct Task {
    std::function<void()> function;
    HANDLE done; // null: nobody waits
};

} // namespace

Deadline Deadline::in_seconds(unsigned seconds) {
    return Deadline(::GetTickCount64() + seconds * 1000ULL);
}

DWORD Deadline::left_ms() const {
    const unsigned long long now = ::GetTickCount64();
    return now >= tick_ ? 0 : static_cast<DWORD>(tick_ - now);
}

void UiThread::run_posted(LPARAM posted) {
    const std::unique_ptr<Task> task(reinterpret_cast<Task*>(posted));
    task->function();
    if (task->done != nullptr) {
        ::SetEvent(task->done);
    }
}

void UiThread::post(std::function<void()> function) const {
    std::unique_ptr<Task> task(new Task{std::move(function), nullptr});
    if (::PostMessageW(frame_, kRunMessage, 0, reinterpret_cast<LPARAM>(task.get())) != FALSE) {
        task.release();
    }
}

void UiThread::call(const std::function<void()>& function, const Deadline& deadline) const {
    const tarvo::KernelHandle done(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    std::unique_ptr<Task> task(new Task{function, done.get()});
    if (::PostMessageW(frame_, kRunMessage, 0, reinterpret_cast<LPARAM>(task.get())) == FALSE) {
        give_up_();
    }
    task.release();
    if (::WaitForSingleObject(done.get(), deadline.left_ms()) != WAIT_OBJECT_0) {
        give_up_();
    }
}

void UiThread::drain(const Deadline& deadline) const {
    call([] {}, deadline);
}

} // namespace stage

#include "standin/stage/ui_thread.h"

#include "common/win32_handles.h"

#include <deque>
#include <mutex>
#include <utility>

namespace stage {

namespace {

struct Task {
    std::function<void()> function;
    HANDLE done; // null: no thread waits
};

// Each task has one message in the thread's queue, in the same order.
struct TaskQueue {
    std::mutex mutex;
    std::deque<Task> tasks;
};

TaskQueue& queue() {
    static TaskQueue tasks;
    return tasks;
}

} // namespace

Deadline Deadline::in_seconds(unsigned seconds) {
    return Deadline(::GetTickCount64() + seconds * 1000ULL);
}

DWORD Deadline::left_ms() const {
    const unsigned long long now = ::GetTickCount64();
    return now >= tick_ ? 0 : static_cast<DWORD>(tick_ - now);
}

void UiThread::run_posted() {
    Task task = {nullptr, nullptr};
    {
        const std::lock_guard<std::mutex> lock(queue().mutex);
        task = std::move(queue().tasks.front());
        queue().tasks.pop_front();
    }
    task.function();
    if (task.done != nullptr) {
        ::SetEvent(task.done);
    }
}

void UiThread::enqueue(std::function<void()> function, HANDLE done) const {
    const std::lock_guard<std::mutex> lock(queue().mutex);
    queue().tasks.push_back({std::move(function), done});
    if (::PostMessageW(frame_, kRunMessage, 0, 0) == FALSE) {
        queue().tasks.pop_back();
        give_up_();
    }
}

void UiThread::post(std::function<void()> function) const {
    enqueue(std::move(function), nullptr);
}

void UiThread::call(const std::function<void()>& function, const Deadline& deadline) const {
    const tarvo::KernelHandle done(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    enqueue(function, done.get());
    if (::WaitForSingleObject(done.get(), deadline.left_ms()) != WAIT_OBJECT_0) {
        give_up_();
    }
}

void UiThread::drain(const Deadline& deadline) const {
    call([] {}, deadline);
}

} // namespace stage

// The thread of the user interface as the driver sees it: functions are run there, whatever modal loop is
// turning, and the driver can wait until everything that it put in has been worked off. Needs windows.h.
#pragma once

#include <windows.h>

#include <functional>

namespace stage {

// When a wait has to end.
class Deadline {
public:
    static Deadline in_seconds(unsigned seconds);

    DWORD left_ms() const; // 0: passed
    Deadline or_earlier(const Deadline& other) const { return other.tick_ < tick_ ? other : *this; }

private:
    explicit Deadline(unsigned long long tick) : tick_(tick) {}

    unsigned long long tick_;
};

class UiThread {
public:
    // `frame` belongs to the thread; its procedure hands kRunMessage to `run_posted`. `give_up` is called on
    // the waiting thread when a wait has taken too long, and does not return: the other side may still use
    // what the waiting one lent it.
    UiThread(HWND frame, std::function<void()> give_up) : frame_(frame), give_up_(std::move(give_up)) {}

    static constexpr UINT kRunMessage = WM_APP + 1;
    static void run_posted();

    // Returns at once; the function runs when the thread takes its messages.
    void post(std::function<void()> function) const;

    // Returns when the function has run.
    void call(const std::function<void()>& function, const Deadline& deadline) const;

    // Returns when the thread has taken everything that was posted before, in whatever modal loop.
    void drain(const Deadline& deadline) const;

    void give_up() const { give_up_(); }

private:
    void enqueue(std::function<void()> function, HANDLE done) const;

    HWND frame_;
    std::function<void()> give_up_;
};

} // namespace stage

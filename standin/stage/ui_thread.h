// Runs the driver's functions on the user-interface thread, whatever modal loop runs there, and waits for
// them. Needs windows.h.
#pragma once

#include <windows.h>

#include <functional>

namespace stage {

// The end of a wait.
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
    // The thread owns `frame`, whose procedure passes kRunMessage to `run_posted`. After a time limit the
    // waiting thread calls `give_up`, which does not return: the function that still runs may use data of the
    // waiting one.
    UiThread(HWND frame, std::function<void()> give_up) : frame_(frame), give_up_(std::move(give_up)) {}

    static constexpr UINT kRunMessage = WM_APP + 1;
    static void run_posted();

    // Returns at once; the function runs when the thread reads its messages.
    void post(std::function<void()> function) const;

    // Returns when the function has run.
    void call(const std::function<void()>& function, const Deadline& deadline) const;

    // Returns when the thread has run everything that was posted before.
    void drain(const Deadline& deadline) const;

    void give_up() const { give_up_(); }

private:
    void enqueue(std::function<void()> function, HANDLE done) const;

    HWND frame_;
    std::function<void()> give_up_;
};

} // namespace stage

// Finds the message boxes of this process on the screen from its own thread, records their texts, and
// answers each with OK. A main dialog that stays open is closed, so that no test waits for a person.
#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

struct SeenBox {
    std::wstring caption;
    std::wstring text;
    HWND owner;
    HWND owner_of_owner;
    bool owner_has_cameras; // the owner is the main dialog
    int buttons;
};

class BoxAnswerer {
public:
    BoxAnswerer() : thread_([this] { watch(); }) {}
    ~BoxAnswerer() { stop(); }
    BoxAnswerer(const BoxAnswerer&) = delete;
    BoxAnswerer& operator=(const BoxAnswerer&) = delete;

    // Stops watching. Call it after the function that shows the boxes has returned.
    const std::vector<SeenBox>& seen() {
        stop();
        return seen_;
    }

private:
    void stop();
    void watch();
    void answer(HWND box);

    std::vector<SeenBox> seen_;
    std::vector<HWND> answered_;
    std::atomic<bool> stopping_{false};
    std::thread thread_; // declared last: it uses the other members
};

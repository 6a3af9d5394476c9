// Message boxes that nobody sees: each is kept and answered at once. Defines ShowSystemBox() for the test
// program. Portable.
#pragma once

#include "common/message_box.h"

#include <deque>
#include <string>
#include <vector>

struct TestBox {
    tarvo::WindowHandle owner;
    std::wstring text;
    std::wstring caption;
    unsigned style;
    unsigned short language;
};

// While an object lives, it receives the boxes; the latest one counts. Without one every box is answered
// IDOK.
class TestBoxes {
public:
    TestBoxes();
    ~TestBoxes();
    TestBoxes(const TestBoxes&) = delete;
    TestBoxes& operator=(const TestBoxes&) = delete;

    int show(const TestBox& box);

    std::vector<TestBox> shown;
    std::deque<int> answers;                   // used up from the front; an empty queue answers IDOK
    void (*on_show)(const TestBox&) = nullptr; // called while the box is up

private:
    TestBoxes* before_;
};

// Message boxes that nobody sees: each is kept and answered at once. Portable.
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

class TestBoxes : public tarvo::MessageBoxes {
public:
    int show(tarvo::WindowHandle owner, const std::wstring& text, const std::wstring& caption, unsigned style,
             unsigned short language) override;

    std::vector<TestBox> shown;
    std::deque<int> answers;                   // used up from the front; an empty queue answers IDOK
    void (*on_show)(const TestBox&) = nullptr; // called while the box is up
};

// What SystemMessageBoxes() of a test program answers from now on; null: boxes of its own, which answer IDOK.
void use_test_boxes(TestBoxes* boxes);

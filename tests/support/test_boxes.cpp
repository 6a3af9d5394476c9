#include "tests/support/test_boxes.h"

namespace {

TestBoxes* g_boxes = nullptr;

} // namespace

int TestBoxes::show(tarvo::WindowHandle owner, const std::wstring& text, const std::wstring& caption,
                    unsigned style, unsigned short language) {
    shown.push_back({owner, text, caption, style, language});
    if (on_show != nullptr) {
        on_show(shown.back());
    }
    if (answers.empty()) {
        return tarvo::kAnswerOk;
    }
    const int answer = answers.front();
    answers.pop_front();
    return answer;
}

void use_test_boxes(TestBoxes* boxes) {
    g_boxes = boxes;
}

namespace tarvo {

MessageBoxes& SystemMessageBoxes() {
    static TestBoxes unattended;
    return g_boxes == nullptr ? unattended : *g_boxes;
}

} // namespace tarvo

#include "tests/support/test_boxes.h"

namespace {

TestBoxes* g_boxes = nullptr;

} // namespace

TestBoxes::TestBoxes() : before_(g_boxes) {
    g_boxes = this;
}

TestBoxes::~TestBoxes() {
    g_boxes = before_;
}

int TestBoxes::show(const TestBox& box) {
    shown.push_back(box);
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

namespace tarvo {

int ShowSystemBox(WindowHandle owner, const std::wstring& text, const std::wstring& caption, unsigned style,
                  unsigned short language) {
    return g_boxes == nullptr ? kAnswerOk : g_boxes->show({owner, text, caption, style, language});
}

} // namespace tarvo

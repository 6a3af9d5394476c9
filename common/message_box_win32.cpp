#include "common/activation_context.h"
#include "common/message_box.h"

namespace tarvo {

namespace {

class IsolatedMessageBoxes : public MessageBoxes {
public:
    int show(WindowHandle owner, const std::wstring& text, const std::wstring& caption, unsigned style,
             unsigned short language) override {
        return IsolatedMessageBox(owner, text, caption, style, language);
    }
};

} // namespace

MessageBoxes& SystemMessageBoxes() {
    static IsolatedMessageBoxes boxes;
    return boxes;
}

} // namespace tarvo

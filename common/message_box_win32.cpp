#include "common/activation_context.h"
#include "common/message_box.h"

namespace tarvo {

int ShowSystemBox(WindowHandle owner, const std::wstring& text, const std::wstring& caption, unsigned style,
                  unsigned short language) {
    return IsolatedMessageBox(owner, text, caption, style, language);
}

} // namespace tarvo

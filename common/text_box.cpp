#include "common/message_box.h"
#include "common/string_table.h"
#include "resources/resource_ids.h"

namespace tarvo {

unsigned short BoxLanguage(const std::wstring& language_switch) {
    constexpr unsigned short kEnglishUs = 1033;
    constexpr unsigned short kOther = 1;
    return language_switch == L"0" ? kEnglishUs : kOther;
}

int ShowTextBox(MessageBoxes& boxes, WindowHandle owner, unsigned text_id, unsigned style) {
    return boxes.show(owner, Text(text_id), Text(IDS_CAPTION), style, BoxLanguage(Text(IDS_LANGUAGE_SWITCH)));
}

} // namespace tarvo

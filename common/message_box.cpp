#include "common/message_box.h"

#include "common/string_table.h"

namespace tarvo {

int ShowBox(WindowHandle owner, unsigned text_id, unsigned style, unsigned caption_id) {
    const std::wstring caption = caption_id == kNoCaption ? std::wstring() : Text(caption_id);
    return ShowSystemBox(owner, Text(text_id), caption, style, BoxLanguage(Text(IDS_LANGUAGE_SWITCH)));
}

unsigned short BoxLanguage(const std::wstring& language_switch) {
    constexpr unsigned short kEnglishUs = 1033;
    constexpr unsigned short kOther = 1;
    return language_switch == L"0" ? kEnglishUs : kOther;
}

} // namespace tarvo

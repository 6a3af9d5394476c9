// Message boxes, and the one rule for their language id. The service is an interface so that sequences run
// without a window.
#pragma once

#include "common/window_handle.h"

#include <string>

namespace tarvo {

class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;

    // Style and result are MessageBoxExW's (MB_OK 0, MB_OKCANCEL 1, MB_YESNO 4; IDOK 1, IDCANCEL 2, IDYES 6,
    // IDNO 7; 0 when the box could not be shown). `owner` may be null.
    virtual int show(WindowHandle owner, const std::wstring& text, const std::wstring& caption,
                     unsigned style, unsigned short language) = 0;
};

constexpr unsigned kBoxOk = 0;
constexpr unsigned kBoxOkCancel = 1;
constexpr unsigned kBoxYesNo = 4;
constexpr int kAnswerOk = 1;
constexpr int kAnswerCancel = 2;
constexpr int kAnswerYes = 6;

// The real boxes: MessageBoxExW inside the module's activation context.
MessageBoxes& SystemMessageBoxes();

// 1033 when text 57 reads exactly "0", else the number 1 (not a language constant; kept as it is).
unsigned short BoxLanguage(const std::wstring& language_switch);

// The usual box: a string-table text, caption text 49, the language rule.
int ShowTextBox(MessageBoxes& boxes, WindowHandle owner, unsigned text_id, unsigned style = kBoxOk);

} // namespace tarvo

// The one way to show a message box.
#pragma once

#include "common/platform.h"
#include "resources/resource_ids.h"

#include <string>

namespace tarvo {

// Styles and answers of MessageBoxExW.
constexpr unsigned kBoxOk = 0;
constexpr unsigned kBoxOkCancel = 1;
constexpr unsigned kBoxYesNo = 4;
constexpr int kAnswerOk = 1;
constexpr int kAnswerCancel = 2;
constexpr int kAnswerYes = 6;

constexpr unsigned kNoCaption = 0; // the caption is empty

// Shows string-table text `text_id` over `owner`, which may be null. `caption_id` is a string-table text or
// kNoCaption. Returns the answer; 0 when the box could not be shown.
int ShowBox(WindowHandle owner, unsigned text_id, unsigned style = kBoxOk, unsigned caption_id = IDS_CAPTION);

// 1033 when the text IDS_LANGUAGE_SWITCH reads exactly "0", else the number 1 (C-03).
unsigned short BoxLanguage(const std::wstring& language_switch);

// MessageBoxExW inside the module's activation context. Only ShowBox calls it; tests define their own.
int ShowSystemBox(WindowHandle owner, const std::wstring& text, const std::wstring& caption, unsigned style,
                  unsigned short language);

} // namespace tarvo

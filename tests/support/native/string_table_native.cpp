// Where there are no resources, a text reads as its number in brackets.
#include "common/string_table.h"

namespace tarvo {

const wchar_t* LookUpText(unsigned id) {
    static std::wstring text;
    text = Text(id);
    return text.c_str();
}

std::wstring Text(unsigned id) {
    return L"[" + std::to_wstring(id) + L"]";
}

} // namespace tarvo

#include "dialog/opening_sequence.h"

#include <algorithm>

namespace tarvo {

bool IsVersionAccepted(const std::wstring& lowest_accepted) {
    return lowest_accepted <= kPluginVersion;
}

bool IsUsableSceneName(const std::wstring& file_name) {
    const std::wstring name = file_name.substr(0, file_name.rfind(L'.'));
    if (!name.empty() && (name.back() == L' ' || name.back() == L'.')) {
        return false;
    }
    const auto is_cyrillic = [](wchar_t unit) { return unit >= 0x0400 && unit <= 0x052F; };
    return std::none_of(name.begin(), name.end(), is_cyrillic);
}

} // namespace tarvo

#include "dialog/opening_checks.h"

#include <algorithm>

namespace tarvo {

namespace {

constexpr wchar_t kFirstCyrillic = 0x0400;
constexpr wchar_t kLastCyrillic = 0x052F;

bool is_cyrillic(wchar_t unit) {
    return unit >= kFirstCyrillic && unit <= kLastCyrillic;
}

} // namespace

bool IsVersionAccepted(const std::wstring& lowest_accepted) {
    return lowest_accepted <= kPluginVersion; // as texts (C-01)
}

bool IsUsableSceneName(const std::wstring& file_name) {
    const std::wstring name = file_name.substr(0, file_name.rfind(L'.'));
    if (!name.empty() && (name.back() == L' ' || name.back() == L'.')) {
        return false;
    }
    return std::none_of(name.begin(), name.end(), is_cyrillic);
}

} // namespace tarvo

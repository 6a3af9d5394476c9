#include "standin/max_file/scene_text.h"

#include <cwctype>
#include <limits>

namespace max_file {

std::wstring wide_from_utf16(Bytes bytes) {
    std::wstring text;
    ByteCursor cursor(bytes);
    std::uint16_t unit = 0;
    while (cursor.read(unit) && unit != 0) {
        text.push_back(static_cast<wchar_t>(unit));
    }
    return text;
}

bool read_decimal(const std::wstring& text, std::int32_t& value) {
    constexpr std::size_t kMostDigits = 10;
    const std::size_t first = text.compare(0, 1, L"-") == 0 ? 1 : 0;
    if (text.size() == first || text.size() > first + kMostDigits ||
        text.find_first_not_of(L"0123456789", first) != std::wstring::npos) {
        return false;
    }
    const long long number = std::stoll(text);
    if (number < std::numeric_limits<std::int32_t>::min() ||
        number > std::numeric_limits<std::int32_t>::max()) {
        return false;
    }
    value = static_cast<std::int32_t>(number);
    return true;
}

std::wstring file_name_of(const std::wstring& path) {
    return path.substr(folder_of(path).size());
}

std::wstring folder_of(const std::wstring& path) {
    const std::wstring::size_type separator = path.find_last_of(L"\\/");
    return separator == std::wstring::npos ? std::wstring() : path.substr(0, separator + 1);
}

std::wstring folded_path(const std::wstring& path) {
    std::wstring folded;
    for (const wchar_t unit : path) {
        folded.push_back(unit == L'/' ? L'\\'
                                      : static_cast<wchar_t>(std::towlower(static_cast<wint_t>(unit))));
    }
    return folded;
}

} // namespace max_file

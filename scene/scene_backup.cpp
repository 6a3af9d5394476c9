#include "scene/scene_backup.h"

namespace tarvo {

std::wstring BackupName(const std::wstring& name, int number) {
    constexpr std::wstring::size_type kDigits = 6;
    const std::wstring digits = std::to_wstring(number);
    const std::wstring::size_type zeros = digits.size() < kDigits ? kDigits - digits.size() : 0;
    return name + L"_" + std::wstring(zeros, L'0') + digits;
}

std::wstring BackupLogLine(const std::wstring& source, const std::wstring& destination, bool copied,
                           unsigned long error) {
    std::wstring line = L"Backup file from " + source + L" to " + destination;
    if (copied) {
        return line + L" Success!";
    }
    return line + L" Error! Code is " + static_cast<wchar_t>(error & 0xFFFF);
}

} // namespace tarvo

#include "scene/scene_file.h"

#include "common/text.h"

#include <algorithm>
#include <cstddef>

namespace tarvo {

constexpr const char* kExtension = ".max";
constexpr std::size_t kExtensionLength = 4;

SceneFilePlan PlanSceneFile(const std::string& entered_name, const std::string& current_name,
                            const std::string& current_path) {
    SceneFilePlan plan;
    plan.scene_name = entered_name;
    if (entered_name == current_name) {
        plan.file = current_path;
        return plan;
    }
    const std::string::size_type start = FileNameStart(current_path);
    if (start != std::string::npos) {
        plan.file = current_path.substr(0, start) + entered_name;
        plan.save_first = true;
    }
    return plan;
}

// For fewer than four bytes the count wraps round, and the whole name is shown (C-16).
std::string ShownSceneName(const std::string& file_name) {
    return file_name.substr(0, file_name.size() - kExtensionLength);
}

std::string EnteredSceneName(const std::wstring& field_text) {
    return field_text.empty() ? std::string() : WideToUtf8(field_text) + kExtension;
}

std::wstring WithoutExtension(const std::wstring& file_name) {
    return file_name.size() < kExtensionLength ? file_name
                                               : file_name.substr(0, file_name.size() - kExtensionLength);
}

std::wstring BackupName(const std::wstring& name, int number) {
    constexpr std::wstring::size_type kDigits = 6;
    const std::wstring digits = std::to_wstring(number);
    const std::wstring::size_type zeros = digits.size() < kDigits ? kDigits - digits.size() : 0;
    return name + L"_" + std::wstring(zeros, L'0') + digits;
}

std::wstring BackupLogLine(const std::wstring& source, const std::wstring& destination, bool copied,
                           unsigned long error) {
    const std::wstring line = L"Backup file from " + source + L" to " + destination;
    return copied ? line + L" Success!" : line + L" Error! Code is " + static_cast<wchar_t>(error & 0xFFFF);
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

#include "scene/scene_file.h"

#include "common/text.h"
#include "host/host.h"
#include "scene/scene_data.h"

#include <cstdlib>
#include <ctime>
#include <windows.h>

namespace tarvo {

namespace {

constexpr std::size_t kDriveLength = 3;
constexpr std::size_t kPartLength = 256;
constexpr std::size_t kPathLength = 260;

// Empty when a part is too long for the C runtime's path functions. The length is tested first: those
// functions end the whole process on a part that does not fit.
std::wstring backup_path(const std::wstring& source) {
    if (source.size() >= kPartLength) {
        return std::wstring();
    }
    wchar_t drive[kDriveLength] = {};
    wchar_t folder[kPartLength] = {};
    wchar_t name[kPartLength] = {};
    wchar_t extension[kPartLength] = {};
    if (::_wsplitpath_s(source.c_str(), drive, kDriveLength, folder, kPartLength, name, kPartLength,
                        extension, kPartLength) != 0) {
        return std::wstring();
    }
    // Two copies of one second have the same number (C-40).
    std::srand(static_cast<unsigned>(::_time64(nullptr)));
    const std::wstring new_name = BackupName(name, std::rand());
    // The parts have their separators: _wmakepath_s adds none.
    if (std::wcslen(drive) + std::wcslen(folder) + new_name.size() + std::wcslen(extension) >= kPathLength) {
        return std::wstring();
    }
    wchar_t path[kPathLength] = {};
    ::_wmakepath_s(path, kPathLength, drive, folder, new_name.c_str(), extension);
    return path;
}

} // namespace

std::string SceneData::prepare_scene_file(const std::string& entered_name, WindowHandle name_field) {
    const std::wstring current_name = SceneFileName();
    const std::string current_path = WideToUtf8(SceneFilePath());
    if (scene_path.empty()) {
        scene_path = current_path;
    }
    if (current_path.empty()) {
        return std::string();
    }
    scene_name_ = WideToUtf8(current_name);
    if (entered_name.empty()) {
        ::SetWindowTextW(name_field, WithoutExtension(current_name).c_str());
    }
    const SceneFilePlan plan =
        PlanSceneFile(entered_name.empty() ? scene_name_ : entered_name, scene_name_, current_path);
    scene_name_ = plan.scene_name;
    if (!plan.save_first) {
        return plan.file;
    }
    const std::wstring new_path = Utf8ToWide(plan.file);
    const bool saved = new_path.size() <= kMaxScenePath && SaveSceneAs(new_path);
    return saved ? plan.file : std::string();
}

std::int32_t SceneData::backup_scene_file() {
    const std::wstring source = Utf8ToWide(scene_path);
    const std::wstring destination = backup_path(source);
    const BOOL copied = ::CopyFileW(source.c_str(), destination.c_str(), FALSE);
    const DWORD error = copied ? ERROR_SUCCESS : ::GetLastError();
    log_.Write(WideToUtf8(BackupLogLine(source, destination, copied != FALSE, error)), kWarn);
    return copied;
}

} // namespace tarvo

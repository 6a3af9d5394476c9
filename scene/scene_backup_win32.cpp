#include "scene/scene_backup.h"

#include "common/text.h"
#include "scene/scene_data.h"

#include <cstdlib>
#include <ctime>
#include <windows.h>

namespace tarvo {

namespace {

constexpr std::size_t kDriveLength = 3;
constexpr std::size_t kPartLength = 256;
constexpr std::size_t kPathLength = 260;

// Empty when a part is too long for the platform's path functions. The length is tested first: those
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
    // Two copies of one second share the number (C-40).
    std::srand(static_cast<unsigned>(::_time64(nullptr)));
    const std::wstring new_name = BackupName(name, std::rand());
    // A folder ends with its separator and an extension begins with its dot: nothing is added between them.
    if (std::wcslen(drive) + std::wcslen(folder) + new_name.size() + std::wcslen(extension) >= kPathLength) {
        return std::wstring();
    }
    wchar_t path[kPathLength] = {};
    ::_wmakepath_s(path, kPathLength, drive, folder, new_name.c_str(), extension);
    return path;
}

} // namespace

std::int32_t SceneData::backup_scene_file() {
    const std::wstring source = Utf8ToWide(scene_path);
    const std::wstring destination = backup_path(source);
    const BOOL copied = ::CopyFileW(source.c_str(), destination.c_str(), FALSE);
    const DWORD error = copied ? ERROR_SUCCESS : ::GetLastError();
    log_.Write(WideToUtf8(BackupLogLine(source, destination, copied != FALSE, error)), kWarn);
    return copied;
}

} // namespace tarvo

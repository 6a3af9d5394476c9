#include "common/platform.h"

#include <ctime>
#include <direct.h>
#include <io.h>
#include <shlobj.h>
#include <windows.h>

#include <shlwapi.h>

namespace tarvo {

namespace {

constexpr DWORD kProfileBufferLength = 2048;
constexpr DWORD kProgramPathLength = 2048;

} // namespace

std::wstring common_app_data_folder() {
    wchar_t folder[MAX_PATH] = {};
    ::SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, 0, folder);
    return folder;
}

std::wstring program_folder() {
    wchar_t path[kProgramPathLength] = {};
    ::GetModuleFileNameW(nullptr, path, kProgramPathLength);
    ::PathRemoveFileSpecW(path);
    return path;
}

std::wstring read_profile_text(const std::wstring& ini_file, const std::wstring& section,
                               const std::wstring& key) {
    wchar_t buffer[kProfileBufferLength] = {};
    ::GetPrivateProfileStringW(section.c_str(), key.c_str(), L"", buffer, kProfileBufferLength,
                               ini_file.c_str());
    return buffer;
}

LocalTime local_time() {
    SYSTEMTIME now = {};
    ::GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds};
}

long long seconds_since_epoch() {
    return ::_time64(nullptr);
}

bool path_exists(const std::wstring& path) {
    return ::_waccess(path.c_str(), 0) == 0;
}

bool path_exists(const std::string& locale_path) {
    return ::_access(locale_path.c_str(), 0) == 0;
}

long long last_write_time(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == FALSE) {
        return 0;
    }
    return static_cast<long long>(
        (static_cast<unsigned long long>(data.ftLastWriteTime.dwHighDateTime) << 32) |
        data.ftLastWriteTime.dwLowDateTime);
}

bool create_folder(const std::wstring& path) {
    return ::CreateDirectoryW(path.c_str(), nullptr) != FALSE;
}

bool create_folder(const std::string& locale_path) {
    return ::_mkdir(locale_path.c_str()) == 0;
}

unsigned long last_error_code() {
    return ::GetLastError();
}

void sleep_milliseconds(unsigned milliseconds) {
    ::Sleep(milliseconds);
}

} // namespace tarvo

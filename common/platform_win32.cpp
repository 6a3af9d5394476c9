#include "common/platform.h"

#include <ctime>
#include <direct.h>
#include <io.h>
#include <shlobj.h>
#include <windows.h>

#include <shlwapi.h>

namespace tarvo {

namespace {

constexpr DWORD kBufferLength = 2048;

} // namespace

std::wstring CommonAppDataFolder() {
    wchar_t folder[MAX_PATH] = {};
    ::SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, 0, folder);
    return folder;
}

std::wstring ProgramFolder() {
    wchar_t path[kBufferLength] = {};
    ::GetModuleFileNameW(nullptr, path, kBufferLength);
    ::PathRemoveFileSpecW(path);
    return path;
}

std::wstring ReadProfileText(const std::wstring& ini_file, const std::wstring& section,
                             const std::wstring& key) {
    wchar_t buffer[kBufferLength] = {};
    ::GetPrivateProfileStringW(section.c_str(), key.c_str(), L"", buffer, kBufferLength, ini_file.c_str());
    return buffer;
}

LocalTime CurrentLocalTime() {
    SYSTEMTIME now = {};
    ::GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds};
}

long long SecondsSinceEpoch() {
    return ::_time64(nullptr);
}

bool PathExists(const std::wstring& path) {
    return ::_waccess(path.c_str(), 0) == 0;
}

bool PathExists(const std::string& locale_path) {
    return ::_access(locale_path.c_str(), 0) == 0;
}

long long LastWriteTime(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == FALSE) {
        return 0;
    }
    return static_cast<long long>(
        (static_cast<unsigned long long>(data.ftLastWriteTime.dwHighDateTime) << 32) |
        data.ftLastWriteTime.dwLowDateTime);
}

bool CreateFolder(const std::wstring& path) {
    return ::CreateDirectoryW(path.c_str(), nullptr) != FALSE;
}

bool CreateFolder(const std::string& locale_path) {
    return ::_mkdir(locale_path.c_str()) == 0;
}

unsigned long LastErrorCode() {
    return ::GetLastError();
}

bool HasDoubleByteConsole() {
    CPINFO page = {};
    return ::GetCPInfo(CP_OEMCP, &page) != FALSE && page.MaxCharSize == 2;
}

void SleepMilliseconds(unsigned milliseconds) {
    ::Sleep(milliseconds);
}

} // namespace tarvo

// OS calls needed by the portable code, and where the plugin keeps its files. platform_win32.cpp and
// own_file_win32.cpp implement the calls, the native tests link their own. None throws: on error the result
// is an empty text, false or zero.
#pragma once

#include <cstdint>
#include <string>

struct HWND__;

namespace tarvo {

// The very type HWND, for code that does not include windows.h.
using WindowHandle = HWND__*;

// Below the machine-wide application-data folder. Paths are concatenated (backslashes from the shell, forward
// slashes from here) and never normalised (C-30).
constexpr const wchar_t* kPluginFolder = L"/Tarvo Rendering";
constexpr const wchar_t* kIniFile = L"/script/qfx_plugin.ini";
constexpr const wchar_t* kIniSection = L"general";
constexpr const wchar_t* kIniKeyIp = L"ip";
constexpr const wchar_t* kIniKeyPort = L"port";
constexpr const wchar_t* kIniKeyLowerVersion = L"lowerversion";

struct LocalTime {
    int year;
    int month;
    int day;
    int hour;
    int minute;
    int second;
    int millisecond;
};

// The machine-wide application-data folder (CSIDL_COMMON_APPDATA), without a closing separator.
std::wstring CommonAppDataFolder();

// The folder of this process's program, without a closing separator. Reads at most 2047 characters.
std::wstring ProgramFolder();

// A value of an ini file, at most 2047 characters; empty when file, section or key are missing.
std::wstring ReadProfileText(const std::wstring& ini_file, const std::wstring& section,
                             const std::wstring& key);

LocalTime CurrentLocalTime();

// Seconds since 1970, as the C runtime's _time64 counts them.
long long SecondsSinceEpoch();

bool PathExists(const std::wstring& path);
bool PathExists(const std::string& locale_path);

// When a file was last written, in the system's own units: only for comparison. 0 on error.
long long LastWriteTime(const std::wstring& path);

// Creates one level only; true when it created the folder.
bool CreateFolder(const std::wstring& path);
bool CreateFolder(const std::string& locale_path);

// The calling thread's last system error.
unsigned long LastErrorCode();

// Whether the OEM code page, in which console programs write, has characters of one and of two bytes.
bool HasDoubleByteConsole();

// Blocks the calling thread.
void SleepMilliseconds(unsigned milliseconds);

// The volume's serial number and the file's number on it: another file under the same name differs. `known`
// is false when there is no file or the system does not say.
struct FileIdentity {
    bool known = false;
    std::uint32_t volume = 0;
    std::uint64_t index = 0;
};

inline bool operator==(const FileIdentity& one, const FileIdentity& other) {
    return one.known && other.known && one.volume == other.volume && one.index == other.index;
}

// A file that this process wrote.
struct OwnFile {
    std::wstring path;
    FileIdentity identity;
};

FileIdentity FileIdentityOf(const std::wstring& path);

// The file's size in bytes; -1 on error.
long long FileSizeOf(const std::wstring& path);

// True when `path` exists, also when this account may not look at it.
bool IsNameTaken(const std::wstring& path);

// Removes `path` unless it is `own`: a file (read-only ones too), an empty folder, or a link but never its
// target. Returns 0 when `path` is free or `own` afterwards, else the system's error.
unsigned long RemoveForeign(const std::wstring& path, const OwnFile& own);

} // namespace tarvo

// OS calls needed by the portable code. platform_win32.cpp implements them, the native tests link their own.
// None of them throws for a system error: the result is then an empty text, false or zero.
#pragma once

#include <string>

namespace tarvo {

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

// The folder of the program that this process runs, without a closing separator. Its path is read up to 2047
// characters.
std::wstring ProgramFolder();

// The value of a key of the plugin's ini file; empty when file, section or key are missing. At most 2047
// characters.
std::wstring ReadProfileText(const std::wstring& ini_file, const std::wstring& section,
                             const std::wstring& key);

LocalTime CurrentLocalTime();

// Seconds since 1970, as the C runtime's _time64 counts them.
long long SecondsSinceEpoch();

bool PathExists(const std::wstring& path);
bool PathExists(const std::string& locale_path);

// When a file was last written, in units of the system's own: only good for comparing. 0 when nothing tells.
long long LastWriteTime(const std::wstring& path);

// One level only; true when the folder was made.
bool CreateFolder(const std::wstring& path);
bool CreateFolder(const std::string& locale_path);

// The calling thread's last system error.
unsigned long LastErrorCode();

// Whether the OEM code page, in which console programs write, has characters of one and of two bytes.
bool HasDoubleByteConsole();

// Waits on the calling thread.
void SleepMilliseconds(unsigned milliseconds);

} // namespace tarvo

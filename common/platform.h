// The few questions the portable files ask of the system. platform_win32.cpp answers them in the product, a
// small double answers them in the native tests. None of them throws for a system error: a question that
// cannot be answered gives an empty text, false or zero.
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
std::wstring common_app_data_folder();

// The folder of the program that this process runs, without a closing separator. Its path is read up to 2047
// characters.
std::wstring program_folder();

// The value of a key of the plugin's ini file; empty when file, section or key are missing. At most 2047
// characters.
std::wstring read_profile_text(const std::wstring& ini_file, const std::wstring& section,
                               const std::wstring& key);

LocalTime local_time();

// Seconds since 1970, as the C runtime's _time64 counts them.
long long seconds_since_epoch();

bool path_exists(const std::wstring& path);
bool path_exists(const std::string& locale_path);

// When a file was last written, in units of the system's own: only good for comparing. 0 when nothing tells.
long long last_write_time(const std::wstring& path);

// One level only; true when the folder was made.
bool create_folder(const std::wstring& path);
bool create_folder(const std::string& locale_path);

// The calling thread's last system error.
unsigned long last_error_code();

// Waits on the calling thread.
void sleep_milliseconds(unsigned milliseconds);

} // namespace tarvo

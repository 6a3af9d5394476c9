#include "common/platform.h"

#include "common/text.h"
#include "tests/support/native/native_platform.h"

#include <cerrno>
#include <chrono>
#include <ctime>
#include <fstream>
#include <sys/stat.h>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

namespace {

void (*g_sleep)(unsigned milliseconds) = nullptr;

std::string& app_data_folder() {
    static std::string folder;
    return folder;
}

} // namespace

namespace support {

void set_app_data_folder(const std::string& folder) {
    app_data_folder() = folder;
}

void set_sleep(void (*sleep)(unsigned milliseconds)) {
    g_sleep = sleep;
}

} // namespace support

namespace tarvo {

std::wstring CommonAppDataFolder() {
    return Utf8ToWide(app_data_folder());
}

std::wstring ReadProfileText(const std::wstring& ini_file, const std::wstring& section,
                             const std::wstring& key) {
    std::ifstream file(WideToUtf8(ini_file));
    const std::string heading = "[" + WideToUtf8(section) + "]";
    const std::string prefix = WideToUtf8(key) + "=";
    bool inside = false;
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line[0] == '[') {
            inside = line == heading;
        } else if (inside && line.compare(0, prefix.size(), prefix) == 0) {
            return Utf8ToWide(line.substr(prefix.size()));
        }
    }
    return std::wstring();
}

LocalTime CurrentLocalTime() {
    timeval now = {};
    gettimeofday(&now, nullptr);
    tm parts = {};
    localtime_r(&now.tv_sec, &parts);
    return {parts.tm_year + 1900,
            parts.tm_mon + 1,
            parts.tm_mday,
            parts.tm_hour,
            parts.tm_min,
            parts.tm_sec,
            static_cast<int>(now.tv_usec / 1000)};
}

std::wstring ProgramFolder() {
    return L"/usr/bin";
}

long long SecondsSinceEpoch() {
    return static_cast<long long>(std::time(nullptr));
}

bool PathExists(const std::wstring& path) {
    return access(WideToUtf8(path).c_str(), F_OK) == 0;
}

bool PathExists(const std::string& locale_path) {
    return access(locale_path.c_str(), F_OK) == 0;
}

long long LastWriteTime(const std::wstring& path) {
    struct stat status = {};
    return ::stat(WideToUtf8(path).c_str(), &status) == 0
               ? status.st_mtim.tv_sec * 1000000000LL + status.st_mtim.tv_nsec
               : 0;
}

bool CreateFolder(const std::wstring& path) {
    return mkdir(WideToUtf8(path).c_str(), 0777) == 0;
}

bool CreateFolder(const std::string& locale_path) {
    return mkdir(locale_path.c_str(), 0777) == 0;
}

unsigned long LastErrorCode() {
    return static_cast<unsigned long>(errno);
}

// Code page 936, as for Utf8ToAnsi.
bool HasDoubleByteConsole() {
    return true;
}

void SleepMilliseconds(unsigned milliseconds) {
    if (g_sleep != nullptr) {
        g_sleep(milliseconds);
    } else {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }
}

} // namespace tarvo

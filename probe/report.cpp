#include "probe/report.h"

#include <cstdio>

namespace tarvo_probe {

namespace {

constexpr wchar_t kFileName[] = L"TarvoHostProbe.txt";

std::wstring folder_of_module(HINSTANCE module) {
    wchar_t path[MAX_PATH] = {};
    const DWORD length = ::GetModuleFileNameW(module, path, MAX_PATH);
    const std::wstring text(path, length);
    return text.substr(0, text.find_last_of(L"\\/") + 1);
}

std::wstring temporary_folder() {
    wchar_t path[MAX_PATH + 1] = {};
    const DWORD length = ::GetTempPathW(MAX_PATH, path);
    return std::wstring(path, length);
}

bool append(const std::wstring& path, const std::string& bytes, DWORD how) {
    const HANDLE file = ::CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, how,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD written = 0;
    ::WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    ::FlushFileBuffers(file);
    ::CloseHandle(file);
    return written == bytes.size();
}

std::string ascii(const std::wstring& text) {
    std::string result;
    for (const wchar_t unit : text) {
        if (unit >= L' ' && unit <= L'~') {
            result += static_cast<char>(unit);
        } else {
            char code[16] = {};
            std::snprintf(code, sizeof code, "<%u>", static_cast<unsigned>(unit));
            result += code;
        }
    }
    return result;
}

} // namespace

void Report::begin(HINSTANCE module) noexcept {
    try {
        for (const std::wstring& folder : {folder_of_module(module), temporary_folder()}) {
            path_ = folder + kFileName;
            ::DeleteFileW(path_.c_str());
            if (append(path_, "# Tarvo host probe\r\n", CREATE_ALWAYS)) {
                return;
            }
        }
        path_.clear();
    } catch (...) { // without a report there is nothing to say
    }
}

void Report::line(const std::string& key, const std::wstring& answer) noexcept {
    try {
        line(key, ascii(answer).c_str());
    } catch (...) { // see above
    }
}

void Report::line(const std::string& key, const char* answer) noexcept {
    try {
        if (!path_.empty()) {
            append(path_, key + "\t" + answer + "\r\n", OPEN_EXISTING);
        }
    } catch (...) { // see above
    }
}

void Report::number(const std::string& key, long long value) noexcept {
    char text[32] = {};
    std::snprintf(text, sizeof text, "%lld", value);
    line(key, text);
}

Report& TheReport() {
    static Report report;
    return report;
}

} // namespace tarvo_probe

#include "standin/client/files.h"

namespace desktop_client {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

bool write_all(HANDLE file, const std::string& content) {
    DWORD written = 0;
    return ::WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr) != 0 &&
           written == content.size();
}

} // namespace

bool file_exists(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

long long file_size(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == 0) {
        return -1;
    }
    return (static_cast<long long>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
}

bool read_file(const std::wstring& path, size_t limit, std::string& content) {
    content.clear();
    const tarvo::FileHandle file(::CreateFileW(path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                               FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        return false;
    }
    char buffer[65536];
    for (;;) {
        DWORD count = 0;
        if (::ReadFile(file.get(), buffer, sizeof(buffer), &count, nullptr) == 0) {
            return false;
        }
        if (count == 0) {
            return true;
        }
        if (content.size() + count > limit) {
            return false;
        }
        content.append(buffer, count);
    }
}

bool write_file_atomically(const std::wstring& path, const std::string& content) {
    const std::wstring temporary = path + L".tmp";
    tarvo::FileHandle file(::CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                         FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        return false;
    }
    const bool written = write_all(file.get(), content);
    file.reset();
    if (written && ::MoveFileExW(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) != 0) {
        return true;
    }
    ::DeleteFileW(temporary.c_str());
    return false;
}

bool LineFile::open(const std::wstring& path) {
    file_.reset(::CreateFileW(path.c_str(), FILE_APPEND_DATA, kShareAll, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
    return static_cast<bool>(file_);
}

bool LineFile::append(const std::string& line) {
    return write_all(file_.get(), line + "\n");
}

} // namespace desktop_client

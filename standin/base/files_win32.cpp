#include "standin/base/files_win32.h"

#include "standin/base/text.h"

#include <algorithm>

namespace base {

namespace {

struct FindTraits {
    using Type = HANDLE;
    static Type empty() { return INVALID_HANDLE_VALUE; }
    static void close(Type handle) { ::FindClose(handle); }
};
using FindHandle = tarvo::UniqueHandle<FindTraits>;

std::vector<WIN32_FIND_DATAW> matching(const std::wstring& pattern) {
    std::vector<WIN32_FIND_DATAW> found;
    WIN32_FIND_DATAW data = {};
    FindHandle search(::FindFirstFileW(pattern.c_str(), &data));
    if (!search) {
        return found;
    }
    do {
        if (std::wstring(data.cFileName) != L"." && std::wstring(data.cFileName) != L"..") {
            found.push_back(data);
        }
    } while (::FindNextFileW(search.get(), &data) != FALSE);
    return found;
}

std::vector<WIN32_FIND_DATAW> children(const std::wstring& folder) {
    return matching(joined(folder, L"*"));
}

bool is_folder(const WIN32_FIND_DATAW& data) {
    return (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

unsigned long long join_words(DWORD high, DWORD low) {
    return (static_cast<unsigned long long>(high) << 32) | low;
}

void list_below(const std::wstring& folder, const std::string& prefix, std::vector<FileEntry>& files) {
    for (const WIN32_FIND_DATAW& data : children(folder)) {
        const std::wstring path = joined(folder, data.cFileName);
        const std::string name = prefix + to_utf8(data.cFileName);
        if (is_folder(data)) {
            list_below(path, name + "/", files);
            continue;
        }
        FileEntry entry;
        entry.name = name;
        entry.path = path;
        entry.size = static_cast<long long>(join_words(data.nFileSizeHigh, data.nFileSizeLow));
        entry.written = join_words(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime);
        files.push_back(entry);
    }
}

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

tarvo::FileHandle open_for_reading(const std::wstring& path) {
    return tarvo::FileHandle(::CreateFileW(path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                           FILE_ATTRIBUTE_NORMAL, nullptr));
}

bool write_all(HANDLE file, const std::string& content) {
    DWORD written = 0;
    return ::WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr) !=
               FALSE &&
           written == content.size();
}

} // namespace

bool file_exists(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool folder_exists(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool make_folder(const std::wstring& path) {
    if (folder_exists(path)) {
        return true;
    }
    const std::wstring above = folder_of(path);
    if (!above.empty() && above != path && !make_folder(above)) {
        return false;
    }
    return ::CreateDirectoryW(path.c_str(), nullptr) != FALSE || folder_exists(path);
}

bool remove_tree(const std::wstring& path) {
    if (file_exists(path)) {
        ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        return ::DeleteFileW(path.c_str()) != FALSE;
    }
    if (!folder_exists(path)) {
        return true;
    }
    bool all = true;
    for (const WIN32_FIND_DATAW& data : children(path)) {
        all = remove_tree(joined(path, data.cFileName)) && all;
    }
    return ::RemoveDirectoryW(path.c_str()) != FALSE && all;
}

std::vector<FileEntry> list_files(const std::wstring& folder) {
    std::vector<FileEntry> files;
    list_below(folder, std::string(), files);
    std::sort(files.begin(), files.end(),
              [](const FileEntry& one, const FileEntry& other) { return one.name < other.name; });
    return files;
}

std::vector<std::wstring> list_names(const std::wstring& folder) {
    std::vector<std::wstring> names;
    for (const WIN32_FIND_DATAW& data : children(folder)) {
        names.emplace_back(data.cFileName);
    }
    return names;
}

std::vector<std::wstring> matching_files(const std::wstring& pattern) {
    std::vector<std::wstring> names;
    for (const WIN32_FIND_DATAW& data : matching(pattern)) {
        if (!is_folder(data)) {
            names.emplace_back(data.cFileName);
        }
    }
    return names;
}

long long file_size(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == FALSE) {
        return -1;
    }
    return static_cast<long long>(join_words(data.nFileSizeHigh, data.nFileSizeLow));
}

bool read_file(const std::wstring& path, std::string& content, std::size_t limit) {
    content.clear();
    const tarvo::FileHandle file = open_for_reading(path);
    char block[65536];
    DWORD read = 0;
    while (file && ::ReadFile(file.get(), block, sizeof block, &read, nullptr) != FALSE) {
        if (read == 0) {
            return true;
        }
        if (content.size() + read > limit) {
            return false;
        }
        content.append(block, read);
    }
    return false;
}

bool write_file(const std::wstring& path, const std::string& content) {
    const tarvo::FileHandle file(::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                               CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file && write_all(file.get(), content);
}

bool write_file_and_folders(const std::wstring& path, const std::string& content) {
    return make_folder(folder_of(path)) && write_file(path, content);
}

bool write_file_atomically(const std::wstring& path, const std::string& content) {
    const std::wstring temporary = path + L".tmp";
    if (write_file(temporary, content) &&
        ::MoveFileExW(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE) {
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

std::wstring absolute_path(const std::wstring& path) {
    const DWORD length = ::GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
    std::wstring full(length, L'\0');
    const DWORD used = ::GetFullPathNameW(path.c_str(), length, length > 0 ? &full[0] : nullptr, nullptr);
    full.resize(used);
    return full.empty() ? path : full;
}

std::wstring folder_of(const std::wstring& path) {
    const std::size_t slash = path.find_last_of(L"\\/");
    return slash == std::wstring::npos ? std::wstring() : path.substr(0, slash);
}

std::wstring name_of(const std::wstring& path) {
    const std::size_t slash = path.find_last_of(L"\\/");
    return slash == std::wstring::npos ? path : path.substr(slash + 1);
}

std::wstring joined(const std::wstring& folder, const std::wstring& name) {
    return folder + L"\\" + name;
}

std::wstring program_folder() {
    wchar_t path[4096] = {};
    ::GetModuleFileNameW(nullptr, path, 4095);
    return folder_of(path);
}

} // namespace base

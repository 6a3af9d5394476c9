#include "standin/stage/script_files.h"

#include "common/win32_handles.h"
#include "standin/base/files_win32.h"

namespace stage {

namespace {

using maxscript::Text;

struct FindTraits {
    using Type = HANDLE;
    static Type empty() { return INVALID_HANDLE_VALUE; }
    static void close(Type handle) { ::FindClose(handle); }
};
using FindHandle = tarvo::UniqueHandle<FindTraits>;

std::wstring wide(const Text& text) {
    return maxscript::wide_from_text(text);
}

std::vector<Text> matching(const Text& pattern, bool folders) {
    std::vector<Text> found;
    const std::size_t slash = pattern.find_last_of(u"\\/");
    const Text folder = slash == Text::npos ? Text() : pattern.substr(0, slash + 1);
    WIN32_FIND_DATAW data = {};
    FindHandle search(::FindFirstFileW(wide(pattern).c_str(), &data));
    if (!search) {
        return found;
    }
    do {
        const std::wstring name = data.cFileName;
        const bool is_folder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (name != L"." && name != L".." && is_folder == folders) {
            found.push_back(folder + maxscript::text_from_wide(name) + (folders ? u"\\" : u""));
        }
    } while (::FindNextFileW(search.get(), &data) != FALSE);
    return found;
}

} // namespace

bool ScriptFiles::exists(const Text& path) {
    return base::file_exists(wide(path));
}

bool ScriptFiles::folder_exists(const Text& path) {
    return base::folder_exists(wide(path));
}

std::int64_t ScriptFiles::size(const Text& path) {
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (::GetFileAttributesExW(wide(path).c_str(), GetFileExInfoStandard, &data) == FALSE) {
        return 0;
    }
    return (static_cast<std::int64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
}

bool ScriptFiles::read(const Text& path, std::string& bytes) {
    return base::read_file(wide(path), bytes);
}

bool ScriptFiles::write(const Text& path, const std::string& bytes) {
    return base::write_file(wide(path), bytes);
}

std::vector<Text> ScriptFiles::list(const Text& pattern) {
    return matching(pattern, false);
}

std::vector<Text> ScriptFiles::folders(const Text& pattern) {
    return matching(pattern, true);
}

bool ScriptFiles::remove(const Text& path) {
    return ::DeleteFileW(wide(path).c_str()) != FALSE;
}

bool ScriptFiles::rename(const Text& from, const Text& to) {
    return ::MoveFileW(wide(from).c_str(), wide(to).c_str()) != FALSE;
}

bool ScriptFiles::copy(const Text& from, const Text& to) {
    return ::CopyFileW(wide(from).c_str(), wide(to).c_str(), TRUE) != FALSE;
}

bool ScriptFiles::is_read_only(const Text& path) {
    const DWORD attributes = ::GetFileAttributesW(wide(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

bool ScriptFiles::set_read_only(const Text& path, bool read_only) {
    const DWORD attributes = ::GetFileAttributesW(wide(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return false;
    }
    const DWORD changed =
        read_only ? attributes | FILE_ATTRIBUTE_READONLY : attributes & ~DWORD{FILE_ATTRIBUTE_READONLY};
    return ::SetFileAttributesW(wide(path).c_str(), changed) != FALSE;
}

} // namespace stage

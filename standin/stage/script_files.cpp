#include "standin/base/files_win32.h"
#include "standin/stage/script_runner.h"

#include <algorithm>

namespace stage {

namespace {

using maxscript::Text;

std::wstring wide(const Text& text) {
    return maxscript::wide_from_text(text);
}

} // namespace

bool ScriptFiles::exists(const Text& path) {
    return base::file_exists(wide(path));
}

bool ScriptFiles::folder_exists(const Text& path) {
    return base::folder_exists(wide(path));
}

std::int64_t ScriptFiles::size(const Text& path) {
    return std::max<std::int64_t>(base::file_size(wide(path)), 0);
}

bool ScriptFiles::read(const Text& path, std::string& bytes) {
    return base::read_file(wide(path), bytes);
}

bool ScriptFiles::write(const Text& path, const std::string& bytes) {
    return base::write_file(wide(path), bytes);
}

std::vector<Text> ScriptFiles::list(const Text& pattern) {
    const Text folder = pattern.substr(0, pattern.find_last_of(u"\\/") + 1);
    std::vector<Text> found;
    for (const std::wstring& name : base::matching_files(wide(pattern))) {
        found.push_back(folder + maxscript::text_from_wide(name));
    }
    return found;
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

#include "tests/support/memory_files.h"

#include "standin/base/wildcards.h"

#include <algorithm>

namespace support {

namespace {

Text folder_of(const Text& key) {
    const std::size_t slash = key.rfind(u'\\');
    return slash == Text::npos ? Text() : key.substr(0, slash);
}

Text name_of(const Text& key) {
    const std::size_t slash = key.find_last_of(u"\\/");
    return slash == Text::npos ? key : key.substr(slash + 1);
}

} // namespace

Text MemoryFiles::key(const Text& path) {
    Text key;
    for (const char16_t unit : maxscript::folded(path)) {
        const char16_t slashed = unit == u'/' ? u'\\' : unit;
        if (slashed != u'\\' || key.empty() || key.back() != u'\\') {
            key += slashed;
        }
    }
    return key;
}

MemoryFile& MemoryFiles::put(const Text& path, const std::string& bytes) {
    MemoryFile& file = files_[key(path)];
    file.path = file.path.empty() ? path : file.path;
    file.bytes = bytes;
    return file;
}

MemoryFile* MemoryFiles::find(const Text& path) {
    const auto found = files_.find(key(path));
    return found == files_.end() ? nullptr : &found->second;
}

std::vector<Text> MemoryFiles::paths() const {
    std::vector<Text> paths;
    for (const auto& file : files_) {
        paths.push_back(file.second.path);
    }
    return paths;
}

std::size_t MemoryFiles::queries_below(const Text& folder) const {
    const Text begin = key(folder);
    return static_cast<std::size_t>(
        std::count_if(queries_.begin(), queries_.end(),
                      [&begin](const Text& query) { return query.compare(0, begin.size(), begin) == 0; }));
}

bool MemoryFiles::exists(const Text& path) {
    queries_.push_back(key(path));
    return find(path) != nullptr;
}

// A folder exists when it contains a file, at any depth.
bool MemoryFiles::folder_exists(const Text& path) {
    Text begin = key(path);
    queries_.push_back(begin);
    if (begin.empty() || begin.back() != u'\\') {
        begin += u'\\';
    }
    const auto first = files_.lower_bound(begin);
    return first != files_.end() && first->first.compare(0, begin.size(), begin) == 0;
}

std::int64_t MemoryFiles::size(const Text& path) {
    const MemoryFile* file = find(path);
    return file == nullptr ? 0 : static_cast<std::int64_t>(file->bytes.size());
}

bool MemoryFiles::may_change(const Text& path) const {
    return locked_folders_.count(folder_of(key(path))) == 0;
}

bool MemoryFiles::read(const Text& path, std::string& bytes) {
    const MemoryFile* file = find(path);
    if (file == nullptr || file->unreadable) {
        return false;
    }
    bytes = file->bytes;
    return true;
}

bool MemoryFiles::write(const Text& path, const std::string& bytes) {
    const MemoryFile* file = find(path);
    if (!may_change(path) || (file != nullptr && (file->read_only || file->held || file->unreadable))) {
        return false;
    }
    const std::size_t before = file == nullptr ? 0 : file->bytes.size();
    const std::size_t fits = std::min(bytes.size(), space_ > bytes.size() ? bytes.size() : before + space_);
    put(path, bytes.substr(0, fits));
    space_ -= fits > before ? fits - before : 0;
    return fits == bytes.size();
}

std::vector<Text> MemoryFiles::list(const Text& pattern) {
    const Text wanted = key(pattern);
    queries_.push_back(wanted);
    const Text folder = pattern.substr(0, pattern.find_last_of(u"\\/") + 1);
    std::vector<Text> paths;
    for (const auto& file : files_) {
        if (folder_of(file.first) == folder_of(wanted) &&
            base::matches_wildcards(name_of(file.first), name_of(wanted))) {
            paths.push_back(folder + name_of(file.second.path));
        }
    }
    return paths;
}

bool MemoryFiles::remove(const Text& path) {
    const MemoryFile* file = find(path);
    if (file == nullptr || file->read_only || file->held || file->unreadable || !may_change(path)) {
        return false;
    }
    files_.erase(key(path));
    return true;
}

bool MemoryFiles::rename(const Text& from, const Text& to) {
    const MemoryFile* file = find(from);
    if (file == nullptr || file->held || file->unreadable || exists(to) || !renames_ || !may_change(from) ||
        !may_change(to)) {
        return false;
    }
    MemoryFile moved = *file;
    moved.path = to;
    files_.erase(key(from));
    files_[key(to)] = moved;
    return true;
}

bool MemoryFiles::copy(const Text& from, const Text& to) {
    const MemoryFile* file = find(from);
    if (file == nullptr || file->unreadable || exists(to) || !may_change(to) || file->bytes.size() > space_) {
        return false;
    }
    space_ -= file->bytes.size();
    MemoryFile copied = *file;
    copied.path = to;
    copied.held = false;
    files_[key(to)] = copied;
    return true;
}

bool MemoryFiles::is_read_only(const Text& path) {
    const MemoryFile* file = find(path);
    return file != nullptr && file->read_only;
}

bool MemoryFiles::set_read_only(const Text& path, bool read_only) {
    MemoryFile* file = find(path);
    if (file == nullptr || !may_change(path)) {
        return false;
    }
    file->read_only = read_only;
    return true;
}

} // namespace support

#include "packaging/diagnostics/manifest.h"

#include <algorithm>
#include <sstream>

namespace diagnostics {

namespace {

constexpr std::size_t kHashLength = 64;

bool is_hash(const std::string& text) {
    return text.size() == kHashLength && text.find_first_not_of("0123456789abcdef") == std::string::npos;
}

// Only paths below C:\ProgramData are accepted: the list itself may have been changed.
bool is_inside(const std::string& path) {
    return !path.empty() && path.front() != '/' && path.find("..") == std::string::npos &&
           path.find_first_of("\\:") == std::string::npos;
}

bool read_line(const std::string& line, ListedFile& file) {
    std::istringstream stream(line);
    if (!(stream >> file.sha256 >> file.size) || stream.get() != ' ') {
        return false;
    }
    std::getline(stream, file.path);
    return is_hash(file.sha256) && is_inside(file.path);
}

} // namespace

bool read_manifest(const std::string& text, std::vector<ListedFile>& files) {
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        ListedFile file;
        if (!read_line(line, file)) {
            return false;
        }
        files.push_back(file);
    }
    return !files.empty();
}

FileState compare(const ListedFile& listed, const FoundFile& found) {
    if (!found.exists) {
        return FileState::missing;
    }
    if (!found.readable) {
        return FileState::unreadable;
    }
    if (found.size == 0 && listed.size != 0) {
        return FileState::empty;
    }
    if (found.size < listed.size) {
        return FileState::cut;
    }
    return found.size == listed.size && found.sha256 == listed.sha256 ? FileState::whole : FileState::changed;
}

} // namespace diagnostics

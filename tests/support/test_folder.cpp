#include "tests/support/test_folder.h"

#include "common/platform.h"
#include "common/text.h"

#ifdef _WIN32
#include <windows.h>
#else
#include "tests/support/native/native_platform.h"

#include <cstdio>
#include <ftw.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <dirent.h>
#include <fstream>
#include <sstream>

namespace support {

namespace {

#ifdef _WIN32
std::string app_data_folder() {
    return tarvo::WideToUtf8(tarvo::CommonAppDataFolder());
}
#else
int remove_entry(const char* path, const struct stat*, int, FTW*) {
    return std::remove(path);
}

// Removed when the program ends, with everything in it.
class ScratchFolder {
public:
    ScratchFolder() {
        const char* const parent = std::getenv("TMPDIR");
        std::string name = (parent != nullptr ? parent : "/tmp") + std::string("/tarvo-test-XXXXXX");
        if (mkdtemp(&name[0]) == nullptr) {
            std::perror(("No scratch folder " + name).c_str());
            std::exit(1);
        }
        path_ = name;
        set_app_data_folder(path_);
    }
    ~ScratchFolder() {
        constexpr int kOpenFolders = 16;
        ::nftw(path_.c_str(), remove_entry, kOpenFolders, FTW_DEPTH | FTW_PHYS);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& path() const { return path_; }

private:
    std::string path_;
};

std::string app_data_folder() {
    static const ScratchFolder folder;
    return folder.path();
}
#endif

constexpr std::size_t kStampLength = sizeof "2024-03-07 09:05:02:045 " - 1;

} // namespace

std::string plugin_folder() {
    const std::string folder = app_data_folder() + "/Tarvo Rendering";
    tarvo::CreateFolder(tarvo::Utf8ToWide(folder));
    return folder;
}

std::string log_file(const std::string& channel) {
    return plugin_folder() + "/log\\" + channel + ".log";
}

std::vector<std::string> log_lines(const std::string& channel) {
    std::ifstream file(log_file(channel));
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line.size() > kStampLength ? line.substr(kStampLength) : line);
    }
    return lines;
}

std::size_t log_mark(const std::string& channel) {
    return log_lines(channel).size();
}

std::vector<std::string> log_lines_since(const std::string& channel, std::size_t mark) {
    std::vector<std::string> lines = log_lines(channel);
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(std::min(mark, lines.size())));
    return lines;
}

std::string read_file(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void write_file(const std::string& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << content;
}

std::string test_data_folder() {
    const char* folder = std::getenv("TARVO_TEST_DATA");
    return folder == nullptr ? std::string() : std::string(folder);
}

std::vector<std::string> test_data_names(const std::string& folder, const std::string& ending) {
    std::vector<std::string> names;
    DIR* entries = opendir((test_data_folder() + "/" + folder).c_str());
    if (entries == nullptr) {
        return names;
    }
    for (const dirent* entry = readdir(entries); entry != nullptr; entry = readdir(entries)) {
        const std::string file = entry->d_name;
        if (file.size() > ending.size() &&
            file.compare(file.size() - ending.size(), ending.size(), ending) == 0) {
            names.push_back(file.substr(0, file.size() - ending.size()));
        }
    }
    closedir(entries);
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace support

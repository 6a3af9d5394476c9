// The list of the released files, and how an installed file differs from it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace diagnostics {

struct ListedFile {
    std::string sha256; // lower-case hexadecimal
    unsigned long long size = 0;
    std::string path; // below C:\ProgramData, with slashes; UTF-8
};

// Lines "SHA256 SIZE PATH". False when a line has another form, or when there is none.
bool read_manifest(const std::string& text, std::vector<ListedFile>& files);

enum class FileState { whole, missing, unreadable, empty, cut, changed };

// What is on the disk. `sha256` is read only when the sizes agree.
struct FoundFile {
    bool exists = false;
    bool readable = false;
    unsigned long long size = 0;
    std::string sha256;
};

FileState compare(const ListedFile& listed, const FoundFile& found);

struct DamagedFile {
    std::string path;
    FileState state = FileState::whole;
    unsigned long long size = 0;
    unsigned long long listed_size = 0;
};

enum class ManifestState { read, missing, damaged };

struct InstalledFiles {
    ManifestState manifest = ManifestState::missing;
    std::string manifest_path;
    std::size_t count = 0;
    std::vector<DamagedFile> damaged;
};

} // namespace diagnostics

// Identifies the file under a path, and removes one that this process did not write.
#pragma once

#include <cstdint>
#include <string>

namespace tarvo {

// The volume's serial number and the file's number on it: another file under the same name differs. `known`
// is false when there is no file or the system does not say.
struct FileIdentity {
    bool known = false;
    std::uint32_t volume = 0;
    std::uint64_t index = 0;
};

inline bool operator==(const FileIdentity& one, const FileIdentity& other) {
    return one.known && other.known && one.volume == other.volume && one.index == other.index;
}

// A file that this process wrote.
struct OwnFile {
    std::wstring path;
    FileIdentity identity;
};

FileIdentity FileIdentityOf(const std::wstring& path);

// The file's size in bytes; -1 on error.
long long FileSizeOf(const std::wstring& path);

// True when `path` exists, also when this account may not look at it.
bool IsNameTaken(const std::wstring& path);

// Removes `path` unless it is `own`: a file (read-only ones too), an empty folder, or a link but never its
// target. Returns 0 when `path` is free or `own` afterwards, else the system's error.
unsigned long RemoveForeign(const std::wstring& path, const OwnFile& own);

} // namespace tarvo

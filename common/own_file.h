// Which file lies under a path, and taking away one that is not ours.
#pragma once

#include <cstdint>
#include <string>

namespace tarvo {

// The volume's serial number and the file's number on it: another file under the same name differs. `known`
// is false when nothing lies there or the system does not say.
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

// The file's size in bytes; -1 when there is none or the system does not say.
long long FileSizeOf(const std::wstring& path);

// Whether anything lies under `path`, also when this account may not look at it.
bool IsNameTaken(const std::wstring& path);

// Removes whatever lies under `path` unless it is `own`: a file, read-only ones included, an empty folder, or
// a link, never what the link leads to. 0 when nothing or only `own` lies there afterwards, else the system's
// error.
unsigned long RemoveForeign(const std::wstring& path, const OwnFile& own);

} // namespace tarvo

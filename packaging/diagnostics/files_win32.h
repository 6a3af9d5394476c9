// Looks at files, folders and their rights, and changes nothing (but for a file that it makes and deletes
// again, and the one that it is told to write).
#pragma once

#include "packaging/diagnostics/facts.h"
#include "packaging/diagnostics/rights.h"

#include <string>
#include <vector>

namespace diagnostics {

FileFact file_fact(const std::wstring& path);
FolderFact folder_fact(const std::wstring& path);

// "1.3.5", from the version resource; empty when there is none.
std::string file_version(const std::wstring& path);

// True when it is there and its rights open it (rights.h) to ordinary users: Users, Authenticated Users or
// Everyone.
bool changeable_by_all(const ClosedPlace& place);

struct Entry {
    std::wstring path;
    unsigned long long size = 0;
    bool is_folder = false;
    bool is_link = false;
    unsigned long long written_at = 0; // in the file system's own units (FILETIME)
    std::string written;               // "2024-03-07 09:05:02", local time
};

// Everything below a folder, so many levels deep at most, sorted by path.
std::vector<Entry> entries_below(const std::wstring& folder, int levels);

// The last bytes of a file, as they are, from the start of a line; empty when it cannot be read.
std::string file_tail(const std::wstring& path, unsigned long limit);

// The name behind the last backslash.
std::wstring file_name(const std::wstring& path);

// Writes the file, or a part of it that it then deletes. False when it cannot, or when the path leads to a
// folder or a device; `error` is then Windows' number, 0 for a folder or a device.
bool write_file(const std::wstring& path, const std::string& content, unsigned long& error);

unsigned long long free_bytes(const std::wstring& folder);

} // namespace diagnostics

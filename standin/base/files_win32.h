// Files and directories, always through wide paths.
#pragma once

#include "common/win32_handles.h"

#include <string>
#include <vector>

namespace base {

struct FileEntry {
    std::string name; // below the folder that was listed, with forward slashes; UTF-8
    std::wstring path;
    long long size = 0;
    unsigned long long written = 0; // last write, in the file system's own units
};

bool file_exists(const std::wstring& path);
bool folder_exists(const std::wstring& path);

// All levels; true when the folder is there afterwards.
bool make_folder(const std::wstring& path);

// With everything in it; false when something stayed.
bool remove_tree(const std::wstring& path);

// Everything below `folder`, sorted by name.
std::vector<FileEntry> list_files(const std::wstring& folder);

// Only the folder itself, files and folders, names alone.
std::vector<std::wstring> list_names(const std::wstring& folder);

// The names of the files (no folders) that match; wildcards in the last part.
std::vector<std::wstring> matching_files(const std::wstring& pattern);

// -1 when the size cannot be read.
long long file_size(const std::wstring& path);

// False when the file cannot be read to its end or is larger than `limit` bytes.
bool read_file(const std::wstring& path, std::string& content,
               std::size_t limit = static_cast<std::size_t>(-1));
bool write_file(const std::wstring& path, const std::string& content);

// Writes under another name and renames, so that a reader sees the whole content or no file.
bool write_file_atomically(const std::wstring& path, const std::string& content);

// Lines at the end of a file. Each line has reached the system when `append` returns: it outlives a killed
// process.
class LineFile {
public:
    bool open(const std::wstring& path);
    bool append(const std::string& line);

private:
    tarvo::FileHandle file_;
};

std::wstring absolute_path(const std::wstring& path);
std::wstring folder_of(const std::wstring& path); // without the closing separator
std::wstring name_of(const std::wstring& path);
std::wstring joined(const std::wstring& folder, const std::wstring& name);

// The folder that this program lies in.
std::wstring program_folder();

} // namespace base

// Files and directories, always through wide paths.
#pragma once

#include "common/win32_handles.h"

#include <string>
#include <vector>

namespace base {

struct FileEntry {
    std::string name; // relative to the listed folder, with forward slashes; UTF-8
    std::wstring path;
    long long size = 0;
    unsigned long long written = 0; // last write, in the file system's own units
};

bool file_exists(const std::wstring& path);
bool folder_exists(const std::wstring& path);

// Makes all levels. True when the folder exists afterwards.
bool make_folder(const std::wstring& path);

// Removes a file or a folder with everything in it. False when something could not be removed.
bool remove_tree(const std::wstring& path);

// Everything below `folder`, sorted by name.
std::vector<FileEntry> list_files(const std::wstring& folder);

// The names of the files and folders directly in `folder`.
std::vector<std::wstring> list_names(const std::wstring& folder);

// The names of the files (no folders) that match. Wildcards are in the last part of the path.
std::vector<std::wstring> matching_files(const std::wstring& pattern);

// -1 when the size cannot be read.
long long file_size(const std::wstring& path);

// False when the file cannot be read to its end or is larger than `limit` bytes.
bool read_file(const std::wstring& path, std::string& content,
               std::size_t limit = static_cast<std::size_t>(-1));
bool write_file(const std::wstring& path, const std::string& content);
bool write_file_and_folders(const std::wstring& path, const std::string& content); // makes missing folders

// Writes under another name and renames: a reader sees the whole content or no file.
bool write_file_atomically(const std::wstring& path, const std::string& content);

// Appends lines to a file. The system has a line when `append` returns: it outlives a killed process.
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

// The folder of this program's file.
std::wstring program_folder();

} // namespace base

// Files and folders for the stage, all through wide paths.
#pragma once

#include <string>
#include <vector>

namespace stage {

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

bool read_file(const std::wstring& path, std::string& content);
bool write_file(const std::wstring& path, const std::string& content);

std::wstring absolute_path(const std::wstring& path);
std::wstring folder_of(const std::wstring& path); // without the closing separator
std::wstring name_of(const std::wstring& path);
std::wstring joined(const std::wstring& folder, const std::wstring& name);

// The folder that this program lies in.
std::wstring program_folder();

} // namespace stage

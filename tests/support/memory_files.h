// Files in memory that behave as on Windows: names in any case and with either slash, read-only files that
// cannot be written or deleted (but renamed), a copy that keeps the attribute, files that another program
// holds open, folders without write access. For scripts; portable.
#pragma once

#include "standin/maxscript/interpreter.h"

#include <map>
#include <set>

namespace support {

using maxscript::Text;

struct MemoryFile {
    Text path; // as it was first given
    std::string bytes;
    bool read_only = false;
    bool held = false;       // open in another program: can be read, but not written, deleted or renamed
    bool unreadable = false; // open in another program, without sharing
};

class MemoryFiles : public maxscript::FileAccess {
public:
    MemoryFile& put(const Text& path, const std::string& bytes);
    // Null when there is none.
    MemoryFile* find(const Text& path);
    // No file in it can be created, changed or deleted. Without the closing separator.
    void lock_folder(const Text& folder) { locked_folders_.insert(key(folder)); }
    // From now on this many bytes can be added; a file that does not fit is cut off, and writing it fails.
    void leave_space(std::size_t bytes) { space_ = bytes; }
    // From now on no file can be renamed.
    void refuse_renaming() { renames_ = false; }
    // All paths, sorted.
    std::vector<Text> paths() const;
    // The number of queries for files and folders below `folder` (with its closing separator).
    std::size_t queries_below(const Text& folder) const;

    bool exists(const Text& path) override;
    bool folder_exists(const Text& path) override;
    std::int64_t size(const Text& path) override;
    bool read(const Text& path, std::string& bytes) override;
    bool write(const Text& path, const std::string& bytes) override;
    // The paths begin with the pattern's own folder, as it is written.
    std::vector<Text> list(const Text& pattern) override;
    bool remove(const Text& path) override;
    bool rename(const Text& from, const Text& to) override;
    bool copy(const Text& from, const Text& to) override;
    bool is_read_only(const Text& path) override;
    bool set_read_only(const Text& path, bool read_only) override;

private:
    static Text key(const Text& path);
    bool may_change(const Text& path) const;

    std::map<Text, MemoryFile> files_; // by key
    std::set<Text> locked_folders_;
    std::vector<Text> queries_; // keys
    std::size_t space_ = static_cast<std::size_t>(-1);
    bool renames_ = true;
};

} // namespace support

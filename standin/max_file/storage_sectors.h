// The lower layer of a structured-storage file: sectors, and the table that links them into chains. Used by
// the check of the layout only.
#pragma once

#include "standin/max_file/storage_layout.h"

#include <string>
#include <vector>

namespace max_file {

// Sector numbers from kFirstMark on are marks.
constexpr std::uint32_t kFirstMark = 0xFFFFFFFA;
constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t kUnusedSector = 0xFFFFFFFF;

using SectorList = std::vector<std::uint32_t>;

class StorageSectors {
public:
    StorageSectors(const ReadAt& read, std::uint64_t file_size) : read_(read), file_size_(file_size) {}

    // Reads header and table. False: `problem()` says what is wrong.
    bool load();
    const std::string& problem() const { return problem_; }
    bool fail(const std::string& what) {
        problem_ = what;
        return false;
    }

    std::uint64_t sector_size() const { return sector_size_; }
    std::uint32_t first_directory() const { return first_directory_; }
    std::uint32_t first_small_table() const { return first_small_table_; }

    // The sectors of the chain that begins at `first`.
    bool follow(std::uint32_t first, SectorList& chain);
    bool read_words(std::uint32_t sector, std::vector<std::uint32_t>& words);

private:
    bool cut_off(std::uint64_t needed);
    bool read_header();
    bool find_tables();
    bool read_tables();
    bool check_link(std::uint32_t next, std::vector<bool>& has_predecessor);

    const ReadAt& read_;
    std::uint64_t file_size_;
    std::string problem_;
    std::uint64_t sector_size_ = 0;
    std::uint32_t table_count_ = 0;     // sectors that hold the table
    std::uint32_t first_extension_ = 0; // of the list of those sectors, where the header has no room for it
    std::uint32_t first_directory_ = 0;
    std::uint32_t first_small_table_ = 0;
    SectorList tables_;
    SectorList links_; // the table: what follows each sector
};

// The chain that begins at `first` in a table of links. False when it leaves the table or runs in a circle.
bool follow_chain(const SectorList& links, std::uint32_t first, SectorList& chain);

} // namespace max_file

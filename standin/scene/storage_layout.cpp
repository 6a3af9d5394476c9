#include "standin/scene/storage_layout.h"

#include "standin/scene/scene_bytes.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace standin {

namespace {

constexpr std::uint8_t kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
constexpr std::size_t kHeaderSize = 512;
constexpr std::size_t kTablesInHeader = 109;

// Sector numbers from here on are marks: end of a chain, unused, and so on.
constexpr std::uint32_t kFirstMark = 0xFFFFFFFA;
constexpr std::uint32_t kUnused = 0xFFFFFFFF;

class Layout {
public:
    Layout(const ReadAt& read, std::uint64_t file_size) : read_(read), file_size_(file_size) {}

    std::string problem();

private:
    bool fail(const std::string& what) {
        problem_ = what;
        return false;
    }
    bool cut_off(std::uint64_t needed);
    bool read_header();
    bool read_sector(std::uint32_t sector, std::vector<std::uint32_t>& words);
    bool find_tables();
    bool check_tables();
    bool check_link(std::uint32_t next);

    const ReadAt& read_;
    std::uint64_t file_size_;
    std::string problem_;
    std::uint64_t sector_size_ = 0;
    std::uint32_t table_count_ = 0;      // sectors that hold the table of all sectors
    std::uint32_t first_extension_ = 0;  // of the list of tables, where the header has no room for it
    std::vector<std::uint32_t> tables_;
    std::vector<bool> has_predecessor_;
};

bool Layout::cut_off(std::uint64_t needed) {
    return fail("is cut off: it has " + std::to_string(file_size_) + " bytes and should have at least " +
                std::to_string(needed));
}

bool Layout::read_header() {
    std::vector<std::uint8_t> header(static_cast<std::size_t>(std::min<std::uint64_t>(kHeaderSize, file_size_)));
    if (!read_(0, header.data(), header.size())) {
        return fail("cannot be read");
    }
    if (header.size() < sizeof kSignature || std::memcmp(header.data(), kSignature, sizeof kSignature) != 0) {
        return fail("is not a 3ds Max scene: it is no structured storage file");
    }
    if (header.size() < kHeaderSize) {
        return cut_off(kHeaderSize);
    }
    ByteCursor cursor{Bytes(header)};
    std::uint16_t shift = 0;
    cursor.seek(30);
    cursor.read(shift);
    cursor.seek(44);
    cursor.read(table_count_);
    cursor.seek(68);
    cursor.read(first_extension_);
    if (shift != 9 && shift != 12) {
        return fail("is damaged: its header names an impossible sector size");
    }
    sector_size_ = std::uint64_t(1) << shift;
    if (table_count_ == 0) {
        return fail("is damaged: its header names no table of sectors");
    }
    if (table_count_ > file_size_ / sector_size_) {
        return cut_off((std::uint64_t(table_count_) + 1) * sector_size_);
    }
    cursor.seek(kHeaderSize - kTablesInHeader * 4);
    for (std::uint32_t index = 0; index < std::min<std::uint32_t>(table_count_, kTablesInHeader); ++index) {
        std::uint32_t sector = 0;
        cursor.read(sector);
        tables_.push_back(sector);
    }
    return true;
}

bool Layout::read_sector(std::uint32_t sector, std::vector<std::uint32_t>& words) {
    if (sector >= kFirstMark) {
        return fail("is damaged: its table of sectors is incomplete");
    }
    const std::uint64_t offset = (std::uint64_t(sector) + 1) * sector_size_;
    if (offset + sector_size_ > file_size_) {
        return cut_off(offset + sector_size_);
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(sector_size_));
    if (!read_(offset, bytes.data(), bytes.size())) {
        return fail("cannot be read");
    }
    words.clear();
    ByteCursor cursor{Bytes(bytes)};
    std::uint32_t word = 0;
    while (cursor.read(word)) {
        words.push_back(word);
    }
    return true;
}

// Every extension names tables and, in its last word, the next extension. Each step adds at least one table, so the
// chain ends.
bool Layout::find_tables() {
    std::uint32_t extension = first_extension_;
    while (tables_.size() < table_count_) {
        std::vector<std::uint32_t> words;
        if (!read_sector(extension, words)) {
            return false;
        }
        extension = words.back();
        words.pop_back();
        words.resize(std::min<std::size_t>(words.size(), table_count_ - tables_.size()));
        tables_.insert(tables_.end(), words.begin(), words.end());
    }
    return true;
}

// A sector that two others name would make a chain run in a circle, or two streams share their bytes.
bool Layout::check_link(std::uint32_t next) {
    if (next >= kFirstMark) {
        return true;
    }
    if (next >= has_predecessor_.size() || has_predecessor_[next]) {
        return fail("is damaged: its table of sectors contradicts itself");
    }
    has_predecessor_[next] = true;
    return true;
}

bool Layout::check_tables() {
    has_predecessor_.assign(tables_.size() * static_cast<std::size_t>(sector_size_ / 4), false);
    std::uint64_t sector = 0;
    std::uint64_t sectors_needed = 0;
    for (const std::uint32_t table : tables_) {
        std::vector<std::uint32_t> links;
        if (!read_sector(table, links)) {
            return false;
        }
        for (const std::uint32_t link : links) {
            ++sector;
            if (link == kUnused) {
                continue;
            }
            sectors_needed = sector;
            if (!check_link(link)) {
                return false;
            }
        }
    }
    const std::uint64_t needed = (sectors_needed + 1) * sector_size_;
    return needed <= file_size_ || cut_off(needed);
}

std::string Layout::problem() {
    if (read_header() && find_tables()) {
        check_tables();
    }
    return problem_;
}

} // namespace

std::string storage_problem(const ReadAt& read, std::uint64_t file_size) { return Layout(read, file_size).problem(); }

} // namespace standin

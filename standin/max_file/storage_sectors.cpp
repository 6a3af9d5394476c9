#include "standin/max_file/storage_sectors.h"

#include "standin/max_file/scene_bytes.h"

#include <algorithm>
#include <cstring>

namespace max_file {

namespace {

constexpr std::uint8_t kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
constexpr std::size_t kHeaderSize = 512;
constexpr std::size_t kTablesInHeader = 109;

// Offsets in the header.
constexpr std::size_t kSectorShift = 30;
constexpr std::size_t kTableCount = 44;
constexpr std::size_t kFirstDirectory = 48;
constexpr std::size_t kFirstSmallTable = 60;
constexpr std::size_t kFirstExtension = 68;

template <class Unsigned>
Unsigned number_at(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    ByteCursor cursor{Bytes(bytes)};
    Unsigned number = 0;
    cursor.seek(offset);
    cursor.read(number);
    return number;
}

} // namespace

bool StorageSectors::cut_off(std::uint64_t needed) {
    return fail("is cut off: it has " + std::to_string(file_size_) + " bytes and should have at least " +
                std::to_string(needed));
}

bool StorageSectors::read_header() {
    std::vector<std::uint8_t> header(
        static_cast<std::size_t>(std::min<std::uint64_t>(kHeaderSize, file_size_)));
    if (!read_(0, header.data(), header.size())) {
        return fail("cannot be read");
    }
    if (header.size() < sizeof kSignature || std::memcmp(header.data(), kSignature, sizeof kSignature) != 0) {
        return fail("is not a 3ds Max scene: it is no structured storage file");
    }
    if (header.size() < kHeaderSize) {
        return cut_off(kHeaderSize);
    }
    const std::uint16_t shift = number_at<std::uint16_t>(header, kSectorShift);
    if (shift != 9 && shift != 12) {
        return fail("is damaged: its header names an impossible sector size");
    }
    sector_size_ = std::uint64_t(1) << shift;
    table_count_ = number_at<std::uint32_t>(header, kTableCount);
    first_directory_ = number_at<std::uint32_t>(header, kFirstDirectory);
    first_small_table_ = number_at<std::uint32_t>(header, kFirstSmallTable);
    first_extension_ = number_at<std::uint32_t>(header, kFirstExtension);
    if (table_count_ == 0) {
        return fail("is damaged: its header names no table of sectors");
    }
    if (table_count_ > file_size_ / sector_size_) {
        return cut_off((std::uint64_t(table_count_) + 1) * sector_size_);
    }
    for (std::size_t index = 0; index < std::min<std::size_t>(table_count_, kTablesInHeader); ++index) {
        const std::size_t offset = kHeaderSize - (kTablesInHeader - index) * 4;
        tables_.push_back(number_at<std::uint32_t>(header, offset));
    }
    return true;
}

bool StorageSectors::read_words(std::uint32_t sector, std::vector<std::uint32_t>& words) {
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

// Every extension names tables and, in its last word, the next extension. Each step adds at least one table,
// so the chain ends.
bool StorageSectors::find_tables() {
    std::uint32_t extension = first_extension_;
    while (tables_.size() < table_count_) {
        std::vector<std::uint32_t> words;
        if (!read_words(extension, words)) {
            return false;
        }
        extension = words.back();
        words.pop_back();
        words.resize(std::min<std::size_t>(words.size(), table_count_ - tables_.size()));
        tables_.insert(tables_.end(), words.begin(), words.end());
    }
    return true;
}

// A sector that two others name would belong to two streams.
bool StorageSectors::check_link(std::uint32_t next, std::vector<bool>& has_predecessor) {
    if (next >= kFirstMark) {
        return true;
    }
    if (next >= has_predecessor.size() || has_predecessor[next]) {
        return fail("is damaged: its table of sectors contradicts itself");
    }
    has_predecessor[next] = true;
    return true;
}

bool StorageSectors::read_tables() {
    for (const std::uint32_t table : tables_) {
        SectorList links;
        if (!read_words(table, links)) {
            return false;
        }
        links_.insert(links_.end(), links.begin(), links.end());
    }
    std::vector<bool> has_predecessor(links_.size(), false);
    std::uint64_t used = 0;
    for (std::size_t sector = 0; sector < links_.size(); ++sector) {
        if (links_[sector] != kUnusedSector) {
            used = sector + 1;
        }
        if (!check_link(links_[sector], has_predecessor)) {
            return false;
        }
    }
    const std::uint64_t needed = (used + 1) * sector_size_;
    return needed <= file_size_ || cut_off(needed);
}

bool StorageSectors::load() {
    return read_header() && find_tables() && read_tables();
}

bool StorageSectors::follow(std::uint32_t first, SectorList& chain) {
    return follow_chain(links_, first, chain) || fail("is damaged: its table of sectors contradicts itself");
}

bool follow_chain(const SectorList& links, std::uint32_t first, SectorList& chain) {
    chain.clear();
    for (std::uint32_t sector = first; sector != kEndOfChain; sector = links[sector]) {
        if (sector >= links.size() || chain.size() == links.size()) {
            return false;
        }
        chain.push_back(sector);
    }
    return true;
}

} // namespace max_file

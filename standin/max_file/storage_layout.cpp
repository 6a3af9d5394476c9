#include "standin/max_file/storage_layout.h"

#include "standin/max_file/scene_bytes.h"

#include <algorithm>
#include <cstring>
#include <vector>

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

// Sector numbers from kFirstMark on are marks.
constexpr std::uint32_t kFirstMark = 0xFFFFFFFA;
constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t kUnusedSector = 0xFFFFFFFF;

constexpr std::size_t kWordsPerEntry = 32;
constexpr std::uint32_t kNoEntry = 0xFFFFFFFF;
constexpr std::uint64_t kSmallStreamLimit =
    4096; // shorter streams are in the root's own stream, in small sectors
constexpr std::uint64_t kSmallSectorSize = 64;
constexpr std::uint64_t kLargeSector = 4096;

// The lower layer of the file: sectors, and the table that links them into chains.
using SectorList = std::vector<std::uint32_t>;

class StorageSectors {
public:
    StorageSectors(const ReadAt& read, std::uint64_t file_size) : read_(read), file_size_(file_size) {}

    // Reads header and table. False: `problem()` has the reason.
    bool load();
    const std::string& problem() const { return problem_; }
    bool fail(const std::string& what) {
        problem_ = what;
        return false;
    }

    std::uint64_t sector_size() const { return sector_size_; }
    std::uint32_t first_directory() const { return first_directory_; }
    std::uint32_t first_small_table() const { return first_small_table_; }

    // The chain that begins at `first`.
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
    std::uint32_t first_extension_ = 0; // of the list of those sectors: the header holds 109
    std::uint32_t first_directory_ = 0;
    std::uint32_t first_small_table_ = 0;
    SectorList tables_;
    SectorList links_; // the table: the next sector of each
};

template <class Unsigned>
Unsigned number_at(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    ByteCursor cursor{Bytes(bytes)};
    Unsigned number = 0;
    cursor.seek(offset);
    cursor.read(number);
    return number;
}

// The chain that begins at `first` in a table of links. False when it leaves the table or is a cycle.
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

// Every extension lists tables; its last word is the next extension. Each step adds at least one table, so
// the chain ends.
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

// A sector that follows two others would belong to two streams.
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

enum class EntryKind : std::uint8_t { unused = 0, storage = 1, stream = 2, root = 5 };

struct Entry {
    EntryKind kind = EntryKind::unused;
    std::uint32_t left = kNoEntry;
    std::uint32_t right = kNoEntry;
    std::uint32_t child = kNoEntry;
    std::uint32_t first_sector = 0;
    std::uint64_t size = 0; // bytes
};

Entry parse_entry(const std::uint32_t* words, std::uint64_t sector_size) {
    Entry entry;
    entry.kind = static_cast<EntryKind>((words[16] >> 16) & 0xFF);
    entry.left = words[17];
    entry.right = words[18];
    entry.child = words[19];
    entry.first_sector = words[29];
    entry.size = words[30];
    // In files of small sectors the upper half is unused, and not always zero.
    if (sector_size == kLargeSector) {
        entry.size |= std::uint64_t(words[31]) << 32;
    }
    return entry;
}

// The storages and streams of the file.
class Directory {
public:
    explicit Directory(StorageSectors& sectors) : sectors_(sectors) {}

    bool check() { return load_entries() && load_small_sectors() && check_entries(); }

private:
    bool damaged() { return sectors_.fail("is damaged: its directory contradicts itself"); }
    bool load_entries();
    bool load_small_sectors();
    bool check_entries();
    bool check_stream(const Entry& entry);

    StorageSectors& sectors_;
    std::vector<Entry> entries_;
    SectorList small_links_;
};

bool Directory::load_entries() {
    SectorList chain;
    if (!sectors_.follow(sectors_.first_directory(), chain)) {
        return false;
    }
    for (const std::uint32_t sector : chain) {
        std::vector<std::uint32_t> words;
        if (!sectors_.read_words(sector, words)) {
            return false;
        }
        for (std::size_t first = 0; first + kWordsPerEntry <= words.size(); first += kWordsPerEntry) {
            entries_.push_back(parse_entry(&words[first], sectors_.sector_size()));
        }
    }
    return (!entries_.empty() && entries_[0].kind == EntryKind::root) || damaged();
}

bool Directory::load_small_sectors() {
    SectorList chain;
    if (!sectors_.follow(sectors_.first_small_table(), chain)) {
        return false;
    }
    for (const std::uint32_t sector : chain) {
        SectorList links;
        if (!sectors_.read_words(sector, links)) {
            return false;
        }
        small_links_.insert(small_links_.end(), links.begin(), links.end());
    }
    const Entry& root = entries_[0];
    SectorList holder;
    if (root.size == 0) {
        return true;
    }
    return sectors_.follow(root.first_sector, holder) &&
           (root.size <= holder.size() * sectors_.sector_size() || damaged());
}

bool Directory::check_stream(const Entry& entry) {
    SectorList chain;
    if (entry.size == 0) {
        return true;
    }
    if (entry.size >= kSmallStreamLimit) {
        return sectors_.follow(entry.first_sector, chain) &&
               (entry.size <= chain.size() * sectors_.sector_size() || damaged());
    }
    if (!follow_chain(small_links_, entry.first_sector, chain) ||
        entry.size > chain.size() * kSmallSectorSize) {
        return damaged();
    }
    const std::uint32_t last = *std::max_element(chain.begin(), chain.end());
    return last < entries_[0].size / kSmallSectorSize + 1 || damaged();
}

// The entries of a storage are a tree; an entry that occurs twice would make a search loop.
bool Directory::check_entries() {
    std::vector<bool> met(entries_.size(), false);
    std::vector<std::uint32_t> open = {0};
    while (!open.empty()) {
        const std::uint32_t index = open.back();
        open.pop_back();
        if (index == kNoEntry) {
            continue;
        }
        if (index >= entries_.size() || met[index]) {
            return damaged();
        }
        met[index] = true;
        const Entry& entry = entries_[index];
        const bool is_root = index == 0;
        if ((entry.kind == EntryKind::root) != is_root || entry.kind == EntryKind::unused) {
            return damaged();
        }
        if (entry.kind == EntryKind::stream && !check_stream(entry)) {
            return false;
        }
        open.insert(open.end(), {entry.left, entry.right, entry.child});
    }
    return true;
}

} // namespace

std::string storage_problem(const ReadAt& read, std::uint64_t file_size) {
    StorageSectors sectors(read, file_size);
    if (sectors.load()) {
        Directory(sectors).check();
    }
    return sectors.problem();
}

} // namespace max_file

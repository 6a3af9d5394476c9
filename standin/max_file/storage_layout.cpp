#include "standin/max_file/storage_layout.h"

#include "standin/max_file/storage_sectors.h"

#include <algorithm>

namespace max_file {

namespace {

constexpr std::size_t kWordsPerEntry = 32;
constexpr std::uint32_t kNoEntry = 0xFFFFFFFF;
constexpr std::uint64_t kSmallStreamLimit =
    4096; // shorter streams lie in the root's own stream, in small sectors
constexpr std::uint64_t kSmallSectorSize = 64;
constexpr std::uint64_t kLargeSector = 4096;

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
    // In files of small sectors the upper half is not in use, and not always zero.
    if (sector_size == kLargeSector) {
        entry.size |= std::uint64_t(words[31]) << 32;
    }
    return entry;
}

// The names of the file and where their bytes lie.
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

// The entries of a storage are a tree; one that is met twice would make a search in it run in a circle.
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

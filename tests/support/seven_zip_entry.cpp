#include "tests/support/seven_zip_entry.h"

namespace support {

namespace {

// Reads the header of an archive; a reader that has gone past the end, or met what it does not know, is bad
// for good.
class Header {
public:
    Header(const std::string& bytes, std::size_t at, std::size_t end) : bytes_(bytes), at_(at), end_(end) {}

    bool good() const { return good_; }

    unsigned byte() {
        if (at_ >= end_) {
            good_ = false;
            return 0;
        }
        return static_cast<unsigned char>(bytes_[at_++]);
    }

    void expect(unsigned value) { good_ = byte() == value && good_; }

    std::uint64_t fixed(int count) {
        std::uint64_t value = 0;
        for (int i = 0; i < count; ++i) {
            value |= static_cast<std::uint64_t>(byte()) << (8 * i);
        }
        return value;
    }

    // As many leading ones in the first byte as bytes follow; the rest of it is the high part.
    std::uint64_t number() {
        const unsigned first = byte();
        std::uint64_t value = 0;
        unsigned mask = 0x80;
        for (int i = 0; i < 8; ++i, mask >>= 1) {
            if ((first & mask) == 0) {
                return value | static_cast<std::uint64_t>(first & (mask - 1)) << (8 * i);
            }
            value |= static_cast<std::uint64_t>(byte()) << (8 * i);
        }
        return value;
    }

    void skip(std::uint64_t count) {
        good_ = good_ && count <= end_ - at_;
        at_ += good_ ? static_cast<std::size_t>(count) : 0;
    }

private:
    const std::string& bytes_;
    std::size_t at_;
    std::size_t end_;
    bool good_ = true;
};

// One packed stream, one folder with one coder, one file in it.
void read_streams(Header& header, SevenZipEntry& entry) {
    header.expect(0x04);
    header.expect(0x06);
    header.number(); // where the packed bytes begin
    header.expect(1);
    header.expect(0x09);
    header.number(); // how many they are
    header.expect(0x00);
    header.expect(0x07);
    header.expect(0x0B);
    header.expect(1);
    header.expect(0);
    header.expect(1); // one coder
    const unsigned coder = header.byte();
    header.skip(coder & 0x0F);
    if ((coder & 0x20) != 0) {
        header.skip(header.number());
    }
    header.expect(0x0C);
    entry.size = header.number();
    header.expect(0x00);
    header.expect(0x08);
    header.expect(0x0A);
    header.expect(1);
    entry.crc = static_cast<std::uint32_t>(header.fixed(4));
    header.expect(0x00);
    header.expect(0x00);
}

void read_files(Header& header, SevenZipEntry& entry) {
    constexpr unsigned kNames = 0x11;
    header.expect(0x05);
    header.expect(1);
    for (unsigned property = header.byte(); property != 0 && header.good(); property = header.byte()) {
        const std::uint64_t size = header.number();
        if (property != kNames) {
            header.skip(size);
            continue;
        }
        header.expect(0);
        for (std::uint64_t unit = 1; unit < size; unit += 2) {
            entry.name += static_cast<wchar_t>(header.fixed(2));
        }
        if (!entry.name.empty() && entry.name.back() == 0) {
            entry.name.pop_back();
        }
    }
}

} // namespace

bool read_only_entry(const std::string& archive, SevenZipEntry& entry) {
    constexpr std::size_t kStart = 32;
    Header start(archive, 0, archive.size());
    start.expect('7');
    start.expect('z');
    start.skip(10);
    const std::uint64_t offset = start.fixed(8);
    const std::uint64_t size = start.fixed(8);
    if (!start.good() || offset > archive.size() || size > archive.size() ||
        kStart + offset + size > archive.size()) {
        return false;
    }
    Header header(archive, kStart + static_cast<std::size_t>(offset),
                  kStart + static_cast<std::size_t>(offset + size));
    header.expect(0x01);
    read_streams(header, entry);
    read_files(header, entry);
    return header.good();
}

std::uint32_t crc_of(const std::string& content) {
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const char letter : content) {
        crc ^= static_cast<unsigned char>(letter);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320u : crc >> 1;
        }
    }
    return ~crc;
}

} // namespace support

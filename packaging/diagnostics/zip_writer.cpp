#include "packaging/diagnostics/zip_writer.h"

#include <zlib.h>

#include <vector>

namespace diagnostics {

namespace {

constexpr std::uint32_t kLocalSignature = 0x04034b50;
constexpr std::uint32_t kCentralSignature = 0x02014b50;
constexpr std::uint32_t kEndSignature = 0x06054b50;
constexpr std::uint16_t kNeeds20 = 20;      // deflate
constexpr std::uint16_t kUtf8Names = 0x800; // general purpose bit 11
constexpr std::uint16_t kDeflated = 8;
constexpr int kRawDeflate = -15;
constexpr int kMemoryLevel = 8;

void put16(std::string& to, std::uint32_t value) {
    to += static_cast<char>(value & 0xFF);
    to += static_cast<char>((value >> 8) & 0xFF);
}

void put32(std::string& to, std::uint32_t value) {
    put16(to, value & 0xFFFF);
    put16(to, value >> 16);
}

bool deflated(const std::string& content, std::string& packed) {
    z_stream stream = {};
    if (::deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, kRawDeflate, kMemoryLevel,
                       Z_DEFAULT_STRATEGY) != Z_OK) {
        return false;
    }
    std::vector<unsigned char> input(content.begin(), content.end());
    std::vector<unsigned char> output(::deflateBound(&stream, static_cast<uLong>(content.size())));
    stream.next_in = input.data();
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = output.data();
    stream.avail_out = static_cast<uInt>(output.size());
    const int result = ::deflate(&stream, Z_FINISH);
    packed.assign(output.begin(), output.begin() + static_cast<std::ptrdiff_t>(stream.total_out));
    ::deflateEnd(&stream);
    return result == Z_STREAM_END;
}

std::uint32_t checksum(const std::string& content) {
    const std::vector<unsigned char> bytes(content.begin(), content.end());
    return static_cast<std::uint32_t>(
        ::crc32(::crc32(0, nullptr, 0), bytes.data(), static_cast<uInt>(bytes.size())));
}

} // namespace

ZipWriter::ZipWriter(int year, int month, int day, int hour, int minute, int second)
    : date_(static_cast<std::uint16_t>(((year - 1980) << 9) | (month << 5) | day)),
      time_(static_cast<std::uint16_t>((hour << 11) | (minute << 5) | (second / 2))) {}

// From "version needed" to "length of the extra field": the same in both places.
std::string ZipWriter::header(const std::string& name, std::uint32_t crc, std::uint32_t packed,
                              std::uint32_t size) const {
    std::string header;
    put16(header, kNeeds20);
    put16(header, kUtf8Names);
    put16(header, kDeflated);
    put16(header, time_);
    put16(header, date_);
    put32(header, crc);
    put32(header, packed);
    put32(header, size);
    put16(header, static_cast<std::uint32_t>(name.size()));
    put16(header, 0);
    return header;
}

bool ZipWriter::add(const std::string& name, const std::string& content) {
    std::string packed;
    if (!deflated(content, packed)) {
        return false;
    }
    const std::string common = header(name, checksum(content), static_cast<std::uint32_t>(packed.size()),
                                      static_cast<std::uint32_t>(content.size()));
    const std::uint32_t offset = static_cast<std::uint32_t>(files_.size());
    put32(files_, kLocalSignature);
    files_ += common + name + packed;

    put32(directory_, kCentralSignature);
    put16(directory_, kNeeds20);
    directory_ += common;
    put16(directory_, 0); // comment
    put16(directory_, 0); // disk
    put16(directory_, 0); // internal attributes
    put32(directory_, 0); // external attributes
    put32(directory_, offset);
    directory_ += name;
    ++count_;
    return true;
}

std::string ZipWriter::finish() {
    std::string end;
    put32(end, kEndSignature);
    put16(end, 0);
    put16(end, 0);
    put16(end, count_);
    put16(end, count_);
    put32(end, static_cast<std::uint32_t>(directory_.size()));
    put32(end, static_cast<std::uint32_t>(files_.size()));
    put16(end, 0);
    return files_ + directory_ + end;
}

} // namespace diagnostics

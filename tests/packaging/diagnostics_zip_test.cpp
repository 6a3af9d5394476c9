#include "packaging/diagnostics/zip_writer.h"

#include <gtest/gtest.h>

#include <zlib.h>

#include <vector>

namespace {

using diagnostics::ZipWriter;

std::uint32_t number(const std::string& bytes, std::size_t at, int size) {
    std::uint32_t value = 0;
    for (int i = size - 1; i >= 0; --i) {
        value = (value << 8) | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    }
    return value;
}

std::string inflated(const std::string& packed, std::size_t size) {
    z_stream stream = {};
    EXPECT_EQ(::inflateInit2(&stream, -15), Z_OK);
    std::vector<unsigned char> input(packed.begin(), packed.end());
    std::vector<unsigned char> output(size + 1);
    stream.next_in = input.data();
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = output.data();
    stream.avail_out = static_cast<uInt>(output.size());
    EXPECT_EQ(::inflate(&stream, Z_FINISH), Z_STREAM_END);
    ::inflateEnd(&stream);
    return std::string(output.begin(), output.begin() + static_cast<std::ptrdiff_t>(stream.total_out));
}

// tests/packaging/diagnostics_test.py reads a whole archive with another program.
TEST(ZipWriter, HeadersAreValidAndTheFirstFileInflatesToItsContent) {
    ZipWriter zip(2024, 3, 7, 9, 5, 2);
    const std::string content(10000, 'x');
    ASSERT_TRUE(zip.add("logs/a.log", content));
    ASSERT_TRUE(zip.add("empty.txt", ""));
    const std::string archive = zip.finish();

    EXPECT_EQ(number(archive, 0, 4), 0x04034b50U);
    EXPECT_EQ(number(archive, 10, 2), (9U << 11) | (5U << 5) | 1U);
    EXPECT_EQ(number(archive, 12, 2), (44U << 9) | (3U << 5) | 7U);
    // The checksum of ten thousand times x, as Python's zlib.crc32 gives it.
    EXPECT_EQ(number(archive, 14, 4), 0xd55a4a3U);
    const std::uint32_t packed = number(archive, 18, 4);
    EXPECT_LT(packed, 100U);
    EXPECT_EQ(number(archive, 22, 4), 10000U);
    EXPECT_EQ(archive.substr(30, 10), "logs/a.log");
    EXPECT_EQ(inflated(archive.substr(40, packed), 10000), content);

    const std::size_t end = archive.size() - 22;
    EXPECT_EQ(number(archive, end, 4), 0x06054b50U);
    EXPECT_EQ(number(archive, end + 10, 2), 2U);
    const std::size_t directory = number(archive, end + 16, 4);
    EXPECT_EQ(number(archive, directory, 4), 0x02014b50U);
    EXPECT_EQ(number(archive, end + 12, 4), end - directory);
    const std::size_t second = directory + 46 + std::string("logs/a.log").size();
    EXPECT_EQ(number(archive, second, 4), 0x02014b50U);
    EXPECT_EQ(number(archive, second + 42, 4), 40U + packed);
}

} // namespace

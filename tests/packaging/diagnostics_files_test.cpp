#include "packaging/diagnostics/manifest.h"
#include "packaging/diagnostics/module_image.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using diagnostics::FileState;
using diagnostics::ListedFile;
using diagnostics::ModuleImage;

const std::string kHash(64, 'a');

TEST(DiagnosticsManifest, PathsWithBlanksAndBothLineEndingsAreRead) {
    std::vector<ListedFile> files;
    ASSERT_TRUE(diagnostics::read_manifest(
        kHash + " 12 Tarvo Rendering/7-Zip/7z.exe\r\n" + kHash + " 0 a/b c.txt\n", files));
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0].path, "Tarvo Rendering/7-Zip/7z.exe");
    EXPECT_EQ(files[0].size, 12U);
    EXPECT_EQ(files[1].path, "a/b c.txt");
    EXPECT_EQ(files[1].sha256, kHash);
}

TEST(DiagnosticsManifest, MalformedListIsRefused) {
    const std::string lists[] = {"",
                                 "rubbish",
                                 kHash,
                                 kHash + " 12",
                                 kHash + " 12 ",
                                 kHash + " x a",
                                 std::string(64, 'A') + " 12 a",
                                 kHash.substr(1) + " 12 a",
                                 kHash + " 12 a\n\n" + kHash + " 12 b",
                                 kHash + " 12 ../a",
                                 kHash + " 12 /a",
                                 kHash + " 12 C:/a",
                                 kHash + " 12 a\\b"};
    for (const std::string& list : lists) {
        std::vector<ListedFile> files;
        EXPECT_FALSE(diagnostics::read_manifest(list, files)) << list;
    }
}

TEST(DiagnosticsManifest, EachDifferenceGivesItsOwnState) {
    const ListedFile listed = {kHash, 10, "a"};
    const ListedFile listed_empty = {kHash, 0, "a"};
    const std::string other(64, 'b');
    EXPECT_EQ(compare(listed, {false, false, 0, ""}), FileState::missing);
    EXPECT_EQ(compare(listed, {true, false, 10, ""}), FileState::unreadable);
    EXPECT_EQ(compare(listed, {true, true, 0, other}), FileState::empty);
    EXPECT_EQ(compare(listed, {true, true, 9, other}), FileState::cut);
    EXPECT_EQ(compare(listed, {true, true, 10, other}), FileState::changed);
    EXPECT_EQ(compare(listed, {true, true, 11, kHash}), FileState::changed);
    EXPECT_EQ(compare(listed, {true, true, 10, kHash}), FileState::whole);
    EXPECT_EQ(compare(listed_empty, {true, true, 0, kHash}), FileState::whole);
}

void put(std::string& bytes, std::size_t at, std::uint32_t value, unsigned size) {
    for (unsigned i = 0; i < size; ++i) {
        bytes.at(at + i) = static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

// The smallest module that imports two libraries: headers in the first 0x200 bytes, then one section of
// 0x200, loaded at 0x1000.
std::string small_module() {
    constexpr std::size_t header = 0x40;
    constexpr std::size_t optional = header + 24;
    constexpr std::size_t section = optional + 240;
    std::string bytes(0x400, '\0');
    bytes.replace(0, 2, "MZ");
    put(bytes, 0x3C, header, 4);
    bytes.replace(header, 2, "PE");
    put(bytes, header + 6, 1, 2);
    put(bytes, header + 20, 240, 2);
    put(bytes, optional, 0x20B, 2);
    put(bytes, optional + 108, 16, 4);
    put(bytes, optional + 120, 0x1000, 4);
    put(bytes, section + 12, 0x1000, 4);
    put(bytes, section + 16, 0x200, 4);
    put(bytes, section + 20, 0x200, 4);
    put(bytes, 0x200 + 12, 0x1100, 4);
    put(bytes, 0x200 + 20 + 12, 0x1120, 4);
    bytes.replace(0x300, 12, "KERNEL32.dll");
    bytes.replace(0x320, 16, "host_standin.dll");
    return bytes;
}

TEST(DiagnosticsModule, ImportsAreReadInLowerCase) {
    const ModuleImage image = diagnostics::read_image(small_module());
    EXPECT_TRUE(image.whole);
    EXPECT_EQ(image.imports, (std::vector<std::string>{"kernel32.dll", "host_standin.dll"}));
    EXPECT_EQ(diagnostics::stand_in(image), "host_standin.dll");
}

TEST(DiagnosticsModule, ModuleForTheHostHasNoStandIn) {
    std::string bytes = small_module();
    bytes.replace(0x320, 16, std::string("core.dll\0\0\0\0\0\0\0\0", 16));
    const ModuleImage image = diagnostics::read_image(bytes);
    EXPECT_TRUE(image.whole);
    EXPECT_EQ(diagnostics::stand_in(image), "");
}

TEST(DiagnosticsModule, TruncatedModuleIsNotWhole) {
    const std::string whole = small_module();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(diagnostics::read_image(whole.substr(0, size)).whole) << size;
    }
}

// Corrupt headers must cause neither an endless loop nor a read outside the file.
TEST(DiagnosticsModule, CorruptByteDoesNotCrashTheReader) {
    const std::string whole = small_module();
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (int value : {0x00, 0x01, 0x7F, 0xFF}) {
            std::string changed = whole;
            changed[at] = static_cast<char>(value);
            EXPECT_LE(diagnostics::read_image(changed).imports.size(), 1000U);
        }
    }
}

} // namespace

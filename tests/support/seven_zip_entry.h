// What an archive of 7-Zip says about its one file, read without 7-Zip.
#pragma once

#include <cstdint>
#include <string>

namespace support {

struct SevenZipEntry {
    std::wstring name;
    std::uint64_t size = 0;
    std::uint32_t crc = 0;
};

// False when these are not the bytes of an archive with exactly one entry.
bool read_only_entry(const std::string& archive, SevenZipEntry& entry);

std::uint32_t crc_of(const std::string& content);

} // namespace support

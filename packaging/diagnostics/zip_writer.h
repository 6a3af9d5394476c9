// A small zip archive in memory: deflated files with UTF-8 names, one time for all. For texts of a few
// megabytes; no zip64.
#pragma once

#include <cstdint>
#include <string>

namespace diagnostics {

class ZipWriter {
public:
    // Local time, as DOS counts it.
    ZipWriter(int year, int month, int day, int hour, int minute, int second);

    // `name` with forward slashes. False when the text cannot be packed; nothing is added then.
    bool add(const std::string& name, const std::string& content);

    // The whole archive. Call once, at the end.
    std::string finish();

private:
    std::string header(const std::string& name, std::uint32_t crc, std::uint32_t packed,
                       std::uint32_t size) const;

    std::uint16_t date_;
    std::uint16_t time_;
    std::uint16_t count_ = 0;
    std::string files_;
    std::string directory_;
};

} // namespace diagnostics

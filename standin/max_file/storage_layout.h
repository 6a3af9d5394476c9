// Checks the layers of a structured-storage file before the system opens it: the system reports no more than
// "invalid", may open a file that is cut off, and may loop forever on a damaged one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace max_file {

// Reads exactly `count` bytes at `offset`; false when it cannot.
using ReadAt = std::function<bool(std::uint64_t offset, std::uint8_t* buffer, std::size_t count)>;

// Empty when the layout is valid, otherwise the end of a sentence that begins with the file.
std::string storage_problem(const ReadAt& read, std::uint64_t file_size);

} // namespace max_file

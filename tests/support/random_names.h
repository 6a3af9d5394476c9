// File names that Windows allows and that a code page, a command line or a wildcard could damage. Built with
// the same seed, the names are the same everywhere.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace support {

class RandomNames {
public:
    explicit RandomNames(std::uint32_t seed) : state_(seed * 2654435761u + 1) {}

    // A name without extension: no character that Windows forbids, no half of a surrogate pair, no blank or
    // full stop at its end, at most `longest` bytes in UTF-8.
    std::wstring next(std::size_t longest);

    std::uint32_t below(std::uint32_t limit);

private:
    std::wstring character();
    std::wstring injection();

    std::uint64_t state_;
};

// What a system that damages `name` could take for it: the same name with one unit left out, or replaced by a
// letter or by what the code pages make of it. May hold separators and characters that no file can have.
std::vector<std::wstring> neighbours(const std::wstring& name, RandomNames& random, std::size_t count);

// For messages: ASCII as it is, all else as \uXXXX.
std::string escaped(const std::wstring& text);

} // namespace support

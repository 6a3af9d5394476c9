// How a fuzz target states what must hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace fuzz {

// Ends the process when `holds` is false: libFuzzer then keeps the input. In every build, whatever NDEBUG
// says.
inline void rule(bool holds, const char* words) {
    if (!holds) {
        std::fprintf(stderr, "BROKEN RULE: %s\n", words);
        std::abort();
    }
}

// The same for the same bytes: for what is too slow to be looked at with every input.
inline bool one_in(unsigned count, const std::uint8_t* data, std::size_t size) {
    std::uint32_t hash = 2166136261u;
    for (std::size_t at = 0; at < size; ++at) {
        hash = (hash ^ data[at]) * 16777619u;
    }
    return (hash >> 7) % count == 0;
}

} // namespace fuzz

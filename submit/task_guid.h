// The id of one submission.
#pragma once

#include <cstdint>
#include <string>

namespace tarvo {

struct GuidParts {
    std::uint32_t data1;
    std::uint16_t data2;
    std::uint16_t data3;
    std::uint8_t data4[8];
};

// 36 characters: upper-case hexadecimal digits and four hyphens.
std::string FormatGuid(const GuidParts& guid);

// A fresh id; empty when the system cannot make one (an ERROR line on "qfx_http" says so).
std::wstring NewTaskGuid();

} // namespace tarvo

// The summary of a scene file: the property set "DocumentSummaryInformation", whose document parts are lines
// of text under headings ("Scene Totals", "Render Data"). Every length is checked.
#pragma once

#include "standin/max_file/scene_bytes.h"

#include <string>
#include <vector>

namespace max_file {

// Numbers in a property set.
constexpr std::uint16_t kPropertySetMark = 0xFFFE;
constexpr std::uint32_t kCodePageProperty = 1;
constexpr std::uint32_t kHeadingsProperty = 12;
constexpr std::uint32_t kLinesProperty = 13;
constexpr std::uint32_t kTypeInt16 = 2;
constexpr std::uint32_t kTypeInt32 = 3;
constexpr std::uint32_t kTypeVariant = 12;
constexpr std::uint32_t kTypeText = 30;     // bytes in the set's code page
constexpr std::uint32_t kTypeWideText = 31; // UTF-16
constexpr std::uint32_t kTypeVector = 0x1000;
constexpr std::uint16_t kCodePageUtf8 = 65001;
constexpr std::uint16_t kCodePageUtf16 = 1200;
extern const std::uint8_t kDocumentSummaryFormat[16];

struct SummarySection {
    std::wstring heading;
    std::vector<std::wstring> lines;
};

struct Summary {
    std::vector<SummarySection> sections;
    bool texts_are_exact = true; // false: the code page is unknown here, so only ASCII is right

    // The lines under a heading; none when the heading is missing.
    std::vector<std::wstring> lines_under(const std::wstring& heading) const;
};

// False: `problem` has the reason.
bool read_summary(Bytes stream, Summary& summary, std::string& problem);

} // namespace max_file

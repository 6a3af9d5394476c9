#include "packaging/diagnostics/module_image.h"

#include <algorithm>
#include <cctype>
#include <cstdint>

namespace diagnostics {

namespace {

constexpr const char* kStandIn = "host_standin.dll";

// Offsets within the headers of a PE32+ image.
constexpr std::uint64_t kHeaderOffset = 0x3C;
constexpr std::uint64_t kSectionCount = 6;
constexpr std::uint64_t kOptionalSize = 20;
constexpr std::uint64_t kOptional = 24;
constexpr std::uint64_t kDirectoryCount = 108; // of the optional header
constexpr std::uint64_t kImportDirectory = 120;
constexpr std::uint64_t kSectionSize = 40;
constexpr std::uint64_t kDescriptorSize = 20;
constexpr std::uint64_t kDescriptorName = 12;
constexpr std::uint16_t kPe32Plus = 0x20B;
constexpr std::uint64_t kMostSections = 96; // Windows loads no more
constexpr std::uint64_t kMostImports = 1000;

struct Section {
    std::uint64_t address;
    std::uint64_t size; // in the file
    std::uint64_t offset;
};

class ImageReader {
public:
    explicit ImageReader(const std::string& bytes) : bytes_(bytes) {}

    ModuleImage read();

private:
    // Little-endian; 0 and `inside_` false beyond the end.
    std::uint64_t number(std::uint64_t at, unsigned size);
    std::string name(std::uint64_t at) const;
    bool read_sections(std::uint64_t header);
    // Offset in the file; 0 when the address is in no section.
    std::uint64_t file_offset(std::uint64_t address) const;
    std::vector<std::string> read_imports(std::uint64_t optional);

    const std::string& bytes_;
    std::vector<Section> sections_;
    bool inside_ = true;
};

std::uint64_t ImageReader::number(std::uint64_t at, unsigned size) {
    if (at + size > bytes_.size()) {
        inside_ = false;
        return 0;
    }
    std::uint64_t value = 0;
    for (unsigned i = size; i > 0; --i) {
        value = value << 8 | static_cast<unsigned char>(bytes_[static_cast<std::size_t>(at + i - 1)]);
    }
    return value;
}

std::string ImageReader::name(std::uint64_t at) const {
    constexpr std::size_t kLongest = 260;
    std::string result;
    for (std::size_t i = static_cast<std::size_t>(at);
         i < bytes_.size() && bytes_[i] != '\0' && result.size() < kLongest; ++i) {
        result += static_cast<char>(std::tolower(static_cast<unsigned char>(bytes_[i])));
    }
    return result;
}

bool ImageReader::read_sections(std::uint64_t header) {
    const std::uint64_t count = std::min(number(header + kSectionCount, 2), kMostSections);
    std::uint64_t at = header + kOptional + number(header + kOptionalSize, 2);
    bool whole = count != 0;
    for (std::uint64_t i = 0; i < count; ++i, at += kSectionSize) {
        const Section section = {number(at + 12, 4), number(at + 16, 4), number(at + 20, 4)};
        whole = whole && section.offset + section.size <= bytes_.size();
        sections_.push_back(section);
    }
    return whole && inside_;
}

std::uint64_t ImageReader::file_offset(std::uint64_t address) const {
    for (const Section& section : sections_) {
        if (address >= section.address && address - section.address < section.size) {
            return section.offset + (address - section.address);
        }
    }
    return 0;
}

std::vector<std::string> ImageReader::read_imports(std::uint64_t optional) {
    std::vector<std::string> imports;
    if (number(optional + kDirectoryCount, 4) < 2) {
        return imports;
    }
    std::uint64_t at = file_offset(number(optional + kImportDirectory, 4));
    while (at != 0 && inside_ && imports.size() < kMostImports) {
        const std::uint64_t address = number(at + kDescriptorName, 4);
        if (address == 0) {
            break;
        }
        const std::uint64_t offset = file_offset(address);
        if (offset != 0) {
            imports.push_back(name(offset));
        }
        at += kDescriptorSize;
    }
    return imports;
}

ModuleImage ImageReader::read() {
    ModuleImage image;
    if (bytes_.compare(0, 2, "MZ") != 0) {
        return image;
    }
    const std::uint64_t header = number(kHeaderOffset, 4);
    const std::uint64_t optional = header + kOptional;
    const bool known = number(header, 4) == 0x4550 && number(optional, 2) == kPe32Plus;
    if (!known || !read_sections(header)) {
        return image;
    }
    image.imports = read_imports(optional);
    image.whole = inside_;
    return image;
}

} // namespace

ModuleImage read_image(const std::string& bytes) {
    return ImageReader(bytes).read();
}

std::string stand_in(const ModuleImage& image) {
    const auto found = std::find(image.imports.begin(), image.imports.end(), kStandIn);
    return found == image.imports.end() ? std::string() : *found;
}

} // namespace diagnostics

#include "standin/max_file/property_set.h"

#include "standin/base/text.h"
#include "standin/max_file/scene_text.h"

#include <algorithm>
#include <cstring>

namespace max_file {

const std::uint8_t kDocumentSummaryFormat[16] = {0x02, 0xD5, 0xCD, 0xD5, 0x9C, 0x2E, 0x1B, 0x10,
                                                 0x93, 0x97, 0x08, 0x00, 0x2B, 0x2C, 0xF9, 0xAE};

namespace {

// Up to the first zero byte.
std::string narrow_text(Bytes bytes) {
    const auto* const end = std::find(bytes.data, bytes.data + bytes.size, std::uint8_t(0));
    return std::string(bytes.data, end);
}

struct Heading {
    std::wstring text;
    std::uint32_t line_count = 0;
};

// The properties of one format. Offsets count from the start of the section.
class Section {
public:
    Section(Bytes bytes, std::string& problem) : bytes_(bytes), problem_(problem) {}

    bool read(Summary& summary);

private:
    bool fail(const char* what) {
        problem_ = what;
        return false;
    }
    bool read_directory();
    bool find_value(std::uint32_t property, std::uint32_t& type, ByteCursor& value) const;
    void read_code_page();
    bool read_headings(std::vector<Heading>& headings);
    bool read_lines(std::vector<std::wstring>& lines);
    bool read_text(ByteCursor& cursor, std::uint32_t type, std::wstring& text);

    struct Entry {
        std::uint32_t property;
        std::uint32_t offset;
    };
    Bytes bytes_;
    std::string& problem_;
    std::vector<Entry> directory_;
    std::uint16_t code_page_ = 0;
};

bool Section::read_directory() {
    ByteCursor cursor(bytes_);
    std::uint32_t size = 0;
    std::uint32_t count = 0;
    if (!cursor.read(size) || !cursor.read(count) || count > cursor.left() / 8) {
        return fail("its list of properties is cut off");
    }
    for (std::uint32_t index = 0; index < count; ++index) {
        Entry entry = {};
        if (!cursor.read(entry.property) || !cursor.read(entry.offset)) {
            return fail("its list of properties is cut off");
        }
        directory_.push_back(entry);
    }
    return true;
}

bool Section::find_value(std::uint32_t property, std::uint32_t& type, ByteCursor& value) const {
    const auto entry = std::find_if(directory_.begin(), directory_.end(),
                                    [property](const Entry& each) { return each.property == property; });
    return entry != directory_.end() && value.seek(entry->offset) && value.read(type);
}

void Section::read_code_page() {
    std::uint32_t type = 0;
    ByteCursor value(bytes_);
    if (!find_value(kCodePageProperty, type, value) || type != kTypeInt16 || !value.read(code_page_)) {
        code_page_ = 0;
    }
}

bool Section::read_text(ByteCursor& cursor, std::uint32_t type, std::wstring& text) {
    std::uint32_t count = 0;
    Bytes raw;
    const std::size_t unit = type == kTypeWideText ? 2 : 1;
    if ((type != kTypeText && type != kTypeWideText) || !cursor.read(count) || count > cursor.left() / unit ||
        !cursor.take(count * unit, raw)) {
        return fail("a text is cut off or of an unknown type");
    }
    const bool is_utf16 = type == kTypeWideText || code_page_ == kCodePageUtf16;
    text = is_utf16 ? wide_from_utf16(raw) : base::to_wide(narrow_text(raw));
    // Values are aligned to four bytes; the last one may lack its padding.
    const std::size_t padding = (4 - cursor.position() % 4) % 4;
    return cursor.seek(cursor.position() + std::min(padding, cursor.left()));
}

bool Section::read_headings(std::vector<Heading>& headings) {
    std::uint32_t type = 0;
    std::uint32_t count = 0;
    ByteCursor value(bytes_);
    if (!find_value(kHeadingsProperty, type, value) || type != (kTypeVector | kTypeVariant) ||
        !value.read(count) || count % 2 != 0) {
        return fail("it has no readable headings");
    }
    for (std::uint32_t index = 0; index < count; index += 2) {
        Heading heading;
        std::uint32_t text_type = 0;
        std::uint32_t number_type = 0;
        if (!value.read(text_type) || !read_text(value, text_type, heading.text) ||
            !value.read(number_type) || number_type != kTypeInt32 || !value.read(heading.line_count)) {
            return fail("its headings are cut off or damaged");
        }
        headings.push_back(heading);
    }
    return true;
}

bool Section::read_lines(std::vector<std::wstring>& lines) {
    std::uint32_t type = 0;
    std::uint32_t count = 0;
    ByteCursor value(bytes_);
    if (!find_value(kLinesProperty, type, value) || (type & kTypeVector) == 0 || !value.read(count)) {
        return fail("it has no readable lines");
    }
    for (std::uint32_t index = 0; index < count; ++index) {
        std::wstring line;
        if (!read_text(value, type & ~kTypeVector, line)) {
            return fail("its lines are cut off or damaged");
        }
        lines.push_back(line);
    }
    return true;
}

bool Section::read(Summary& summary) {
    std::vector<Heading> headings;
    std::vector<std::wstring> lines;
    if (!read_directory()) {
        return false;
    }
    read_code_page();
    if (!read_headings(headings) || !read_lines(lines)) {
        return false;
    }
    summary.texts_are_exact = code_page_ == kCodePageUtf8 || code_page_ == kCodePageUtf16;
    std::size_t first = 0;
    for (const Heading& heading : headings) {
        if (heading.line_count > lines.size() - first) {
            return fail("its headings promise more lines than there are");
        }
        SummarySection section;
        section.heading = heading.text;
        const auto begin = lines.begin() + static_cast<std::ptrdiff_t>(first);
        section.lines.assign(begin, begin + static_cast<std::ptrdiff_t>(heading.line_count));
        first += heading.line_count;
        summary.sections.push_back(section);
    }
    return true;
}

} // namespace

std::vector<std::wstring> Summary::lines_under(const std::wstring& heading) const {
    const auto found = std::find_if(sections.begin(), sections.end(), [&](const SummarySection& section) {
        return section.heading == heading;
    });
    return found == sections.end() ? std::vector<std::wstring>() : found->lines;
}

bool read_summary(Bytes stream, Summary& summary, std::string& problem) {
    constexpr std::size_t kSystemAndClass = 22; // between the mark and the count of sections
    summary = Summary();
    problem.clear();
    ByteCursor cursor(stream);
    std::uint16_t mark = 0;
    std::uint16_t version = 0;
    std::uint32_t count = 0;
    Bytes skipped;
    if (!cursor.read(mark) || mark != kPropertySetMark || !cursor.read(version) ||
        !cursor.take(kSystemAndClass - sizeof version, skipped) || !cursor.read(count)) {
        problem = "it does not begin like a property set";
        return false;
    }
    for (std::uint32_t index = 0; index < count; ++index) {
        Bytes format;
        std::uint32_t offset = 0;
        if (!cursor.take(sizeof kDocumentSummaryFormat, format) || !cursor.read(offset) ||
            offset > stream.size) {
            break;
        }
        if (std::memcmp(format.data, kDocumentSummaryFormat, sizeof kDocumentSummaryFormat) == 0) {
            return Section(Bytes(stream.data + offset, stream.size - offset), problem).read(summary);
        }
    }
    problem = "it holds no document summary";
    return false;
}

} // namespace max_file

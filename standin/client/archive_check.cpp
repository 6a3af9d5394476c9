#include "standin/client/archive_check.h"

#include "standin/base/files_win32.h"
#include "standin/base/program_win32.h"

#include <cstdlib>

namespace client {

namespace {

bool take_field(const std::string& line, const std::string& key, std::string& value) {
    const std::string start = key + " = ";
    if (line.compare(0, start.size(), start) != 0) {
        return false;
    }
    value = line.substr(start.size());
    return true;
}

} // namespace

ArchiveFindings examine_archive(const std::wstring& seven_zip, const std::wstring& archive) {
    // An archive with the same bytes as the last one is not tested again: a sweep sends the same one each
    // time.
    static std::string last_content;
    static ArchiveFindings last;
    std::string content;
    const bool readable = base::read_file(archive, content);
    if (readable && !last_content.empty() && content == last_content) {
        return last;
    }
    ArchiveFindings findings;
    // Behind "--" a path that begins with a hyphen is a path; a path of Windows cannot hold a quote.
    const std::wstring common = L" -bd -sccUTF-8 -- \"" + archive + L"\"";
    const base::ProgramResult test = base::run_program(seven_zip, L"t" + common);
    findings.program_ran = test.started;
    findings.test_exit_code = test.exit_code;
    findings.test_output = test.output;
    if (test.started && test.exit_code == 0) {
        findings.entries = entries_of_listing(base::run_program(seven_zip, L"l -slt" + common).output);
        last_content = readable ? content : std::string();
        last = findings;
    }
    return findings;
}

std::vector<ArchiveEntry> entries_of_listing(const std::string& listing) {
    std::vector<ArchiveEntry> entries;
    bool in_entries = false; // above the line of hyphens stand the archive's own properties
    size_t start = 0;
    while (start < listing.size()) {
        size_t end = listing.find('\n', start);
        end = end == std::string::npos ? listing.size() : end;
        std::string line = listing.substr(start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        std::string value;
        if (line == "----------") {
            in_entries = true;
        } else if (in_entries && take_field(line, "Path", value)) {
            entries.emplace_back();
            entries.back().name = value;
        } else if (!entries.empty() && take_field(line, "Size", value)) {
            entries.back().size = std::strtoll(value.c_str(), nullptr, 10);
        }
    }
    return entries;
}

} // namespace client

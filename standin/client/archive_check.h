// Looks into a job's archive with the 7-Zip command-line program.
#pragma once

#include <string>
#include <vector>

namespace client {

struct ArchiveEntry {
    std::string name; // UTF-8
    long long size = 0;
};

struct ArchiveFindings {
    bool program_ran = false;
    int test_exit_code = -1; // 0: the archive is whole
    std::string test_output;
    std::vector<ArchiveEntry> entries;
};

// Tests and lists `archive`. Waits for the program without a limit: a large scene takes its time.
ArchiveFindings examine_archive(const std::wstring& seven_zip, const std::wstring& archive);

// The entries of what "7z l -slt" prints.
std::vector<ArchiveEntry> entries_of_listing(const std::string& listing);

} // namespace client

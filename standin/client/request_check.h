// What the client looks at before it would take a job: the request itself, the submit document, the archive.
#pragma once

#include "standin/client/http_request.h"

#include <string>
#include <vector>

namespace client {

struct Check {
    std::string name;
    bool ok;
    std::string detail;
};

// What the request points at, all UTF-8; empty or -1 as far as it could not be found out.
struct Job {
    std::string scene;
    std::string document;
    std::string max_version;
    std::string archive;
    long long archive_size = -1;
    std::string archive_entry;
    long long archive_entry_size = -1;
    std::vector<std::string> cameras;
};

struct RequestFindings {
    Job job;
    std::vector<Check> checks; // a check that an earlier failure made impossible is not in the list
    bool all_ok() const;
};

// Opens the files and starts 7z.exe; takes as long as that takes.
RequestFindings check_request(const HttpRequest& request, const std::wstring& seven_zip);

} // namespace client

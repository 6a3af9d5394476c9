// The zip file for support.
#pragma once

#include "common/platform.h"
#include "packaging/diagnostics/files_win32.h"
#include "packaging/diagnostics/findings.h"
#include "packaging/diagnostics/redaction.h"
#include "packaging/diagnostics/zip_writer.h"

#include <string>
#include <vector>

namespace diagnostics {

class Bundle {
public:
    Bundle(const tarvo::LocalTime& now, const Secrets& secrets, bool unredacted);

    void add(const std::string& name, const std::string& text);
    void add_findings(const std::string& name, const std::vector<Finding>& findings, Language language);
    void add_logs(const std::vector<Entry>& entries);

    // The whole archive. Call once, at the end.
    std::string finish() { return zip_.finish(); }

private:
    std::string hidden(const Argument& argument);

    ZipWriter zip_;
    Redactor redactor_;
    bool unredacted_;
};

// "2024-03-07 09:05:02  12345  path", one line each.
std::string listing(const std::vector<Entry>& entries);

} // namespace diagnostics

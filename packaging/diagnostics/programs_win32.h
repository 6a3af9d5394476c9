// Asks 7-Zip: does it start, and is an archive whole?
#pragma once

#include "packaging/diagnostics/facts.h"

#include <string>

namespace diagnostics {

// Starts the program without arguments, ten seconds at most: 7-Zip then prints its name and version.
SevenZipFact try_seven_zip(const std::wstring& program);

// Tests the archive, kArchiveSeconds at most. `said` receives 7-Zip's complaint about a damaged one.
ArchiveTest test_archive(const std::wstring& program, const std::wstring& archive, std::string& said);

} // namespace diagnostics

// Asks other programs: does the desktop client listen, does 7-Zip start?
#pragma once

#include "packaging/diagnostics/facts.h"

#include <string>

namespace diagnostics {

// One TCP connection, closed at once; nothing is sent. Waits three seconds for each address of the name.
Connection try_connection(const std::wstring& host, int port);

// Starts the program without arguments, ten seconds at most: 7-Zip then prints its name and version.
SevenZipFact try_seven_zip(const std::wstring& program);

} // namespace diagnostics

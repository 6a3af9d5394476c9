// The command line of the diagnostics.
#pragma once

#include "packaging/diagnostics/messages.h"

#include <string>

namespace diagnostics {

struct Options {
    bool help = false;
    bool unredacted = false;
    Language language = Language::english;
    unsigned clean_days = 0; // 0: nothing is to be cleaned
    std::wstring out;        // the zip file; empty: a name with the time, on the desktop
};

// Whose windows are Chinese reads Chinese.
Language system_language();

// False: `bad` is what was not understood. The language is set as far as it was.
bool parse(Options& options, std::string& bad);

} // namespace diagnostics

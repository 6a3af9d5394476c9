// Paths as texts, without asking the system.
#pragma once

#include <string>

namespace tarvo {

// Where the file name of `path` begins: behind the last '/', or behind the last '\\' when there is no '/' at
// all. npos without either.
inline std::string::size_type FileNameStart(const std::string& path) {
    std::string::size_type separator = path.rfind('/');
    if (separator == std::string::npos) {
        separator = path.rfind('\\');
    }
    return separator == std::string::npos ? separator : separator + 1;
}

} // namespace tarvo

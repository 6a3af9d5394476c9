// Looks into a module (a 64-bit PE image) without loading it.
#pragma once

#include <string>
#include <vector>

namespace diagnostics {

struct ModuleImage {
    bool whole = false;               // its headers are readable and all its sections are there
    std::vector<std::string> imports; // names of libraries, lower case
};

ModuleImage read_image(const std::string& bytes);

// The name of the library that stands in for 3ds Max, when the module imports it; otherwise empty.
std::string stand_in(const ModuleImage& image);

} // namespace diagnostics

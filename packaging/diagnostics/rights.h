// What ordinary users must not be able to change, and which rights would let them.
#pragma once

#include <string>
#include <vector>

namespace diagnostics {

enum class Kind {
    file,
    program_folder, // nothing may be added: what starts from it loads what lies there
    shared_folder   // users add to it; what is there already is not theirs
};

struct ClosedPlace {
    std::wstring path;
    Kind kind;
};

// With the paths of the data folder and of the package, both without a backslash at the end.
std::vector<ClosedPlace> closed_places(const std::wstring& data, const std::wstring& package);

// `rights` as Windows counts them in an entry of a list (an access mask).
bool opens(unsigned long rights, Kind kind);

} // namespace diagnostics

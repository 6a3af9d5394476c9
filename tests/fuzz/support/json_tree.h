// A reader of standard JSON of our own, to hold the library's answers against. It shares nothing with the
// library.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace fuzz {

enum class Kind { null, truth, number, text, array, object };

struct Node {
    Kind kind = Kind::null;
    bool truth = false;
    std::string text; // of a text: decoded, UTF-8; of a number: as written
    std::vector<Node> items;
    std::vector<std::pair<std::string, Node>> members; // in the order written, also twice

    double number() const;
    // The last one of that name; null when there is none.
    const Node* find(const std::string& name) const;
};

bool operator==(const Node& one, const Node& other);
inline bool operator!=(const Node& one, const Node& other) {
    return !(one == other);
}

enum class Comments { refused, skipped };

struct JsonText {
    bool good = false;
    // Standard JSON that the library is known to refuse: half of a surrogate pair in an escape, a number
    // beyond a double.
    bool beyond_the_library = false;
    Node root;
};

// Nesting of more than 400 levels is not read.
JsonText read_json(const std::string& text, Comments comments = Comments::refused);

} // namespace fuzz

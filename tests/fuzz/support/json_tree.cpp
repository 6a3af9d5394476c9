#include "tests/fuzz/support/json_tree.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace fuzz {

namespace {

constexpr int kDeepest = 400;

void append_code_point(std::string& text, unsigned code) {
    const auto byte = [&text](unsigned value) { text += static_cast<char>(value); };
    if (code < 0x80) {
        byte(code);
    } else if (code < 0x800) {
        byte(0xC0 | code >> 6);
        byte(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        byte(0xE0 | code >> 12);
        byte(0x80 | (code >> 6 & 0x3F));
        byte(0x80 | (code & 0x3F));
    } else {
        byte(0xF0 | code >> 18);
        byte(0x80 | (code >> 12 & 0x3F));
        byte(0x80 | (code >> 6 & 0x3F));
        byte(0x80 | (code & 0x3F));
    }
}

class Reading {
public:
    Reading(const std::string& text, Comments comments)
        : at_(text.data()), end_(text.data() + text.size()), comments_(comments) {}

    bool all(Node& root) { return value(root, 0) && blanks() && at_ == end_; }
    bool beyond_the_library() const { return beyond_; }

private:
    bool is(char wanted) const { return at_ != end_ && *at_ == wanted; }
    bool take(char wanted) {
        const bool taken = is(wanted);
        at_ += taken ? 1 : 0;
        return taken;
    }
    bool word(const char* wanted) {
        const std::size_t length = std::strlen(wanted);
        if (static_cast<std::size_t>(end_ - at_) < length || std::memcmp(at_, wanted, length) != 0) {
            return false;
        }
        at_ += length;
        return true;
    }
    bool digits() {
        const char* const first = at_;
        while (at_ != end_ && *at_ >= '0' && *at_ <= '9') {
            ++at_;
        }
        return at_ != first;
    }
    bool blanks();
    bool comment();
    bool value(Node& node, int depth);
    bool number(Node& node);
    bool text(std::string& decoded);
    bool escape(std::string& decoded);
    bool four_digits(unsigned& code);
    bool array(Node& node, int depth);
    bool object(Node& node, int depth);

    const char* at_;
    const char* end_;
    Comments comments_;
    bool beyond_ = false;
};

bool Reading::comment() {
    const bool to_line_end = word("//");
    if (!to_line_end && !word("/*")) {
        return false;
    }
    while (at_ != end_ && (to_line_end ? *at_ != '\n' : !word("*/"))) {
        ++at_;
    }
    return true;
}

// Always true.
bool Reading::blanks() {
    const auto is_blank = [](char each) {
        return each == ' ' || each == '\t' || each == '\r' || each == '\n';
    };
    while (at_ != end_) {
        if (is_blank(*at_)) {
            ++at_;
        } else if (comments_ == Comments::refused || !comment()) {
            break;
        }
    }
    return true;
}

bool Reading::value(Node& node, int depth) {
    blanks();
    if (at_ == end_ || depth > kDeepest) {
        return false;
    }
    switch (*at_) {
    case 'n':
        return word("null");
    case 't':
        node.kind = Kind::truth;
        node.truth = true;
        return word("true");
    case 'f':
        node.kind = Kind::truth;
        return word("false");
    case '"':
        node.kind = Kind::text;
        return text(node.text);
    case '[':
        return array(node, depth);
    case '{':
        return object(node, depth);
    default:
        return number(node);
    }
}

bool Reading::number(Node& node) {
    const char* const first = at_;
    node.kind = Kind::number;
    take('-');
    if (!take('0') && !digits()) {
        return false;
    }
    if (take('.') && !digits()) {
        return false;
    }
    if (take('e') || take('E')) {
        static_cast<void>(take('+') || take('-'));
        if (!digits()) {
            return false;
        }
    }
    node.text.assign(first, at_);
    beyond_ = beyond_ || std::isinf(node.number());
    return true;
}

int digit_of(char character) {
    const auto within = [character](char first, char last) {
        return character >= first && character <= last;
    };
    return within('0', '9')   ? character - '0'
           : within('a', 'f') ? character - 'a' + 10
           : within('A', 'F') ? character - 'A' + 10
                              : -1;
}

bool Reading::four_digits(unsigned& code) {
    code = 0;
    for (int index = 0; index < 4; ++index, ++at_) {
        const int digit = at_ == end_ ? -1 : digit_of(*at_);
        if (digit < 0) {
            return false;
        }
        code = code << 4 | static_cast<unsigned>(digit);
    }
    return true;
}

bool Reading::escape(std::string& decoded) {
    if (at_ == end_) {
        return false;
    }
    const char letter = *at_++;
    if (letter != 'u') {
        constexpr const char* kLetters = "\"\\/bfnrt";
        constexpr const char* kMeanings = "\"\\/\b\f\n\r\t";
        const char* const found = letter == '\0' ? nullptr : std::strchr(kLetters, letter);
        if (found != nullptr) {
            decoded += kMeanings[found - kLetters];
        }
        return found != nullptr;
    }
    unsigned code = 0;
    if (!four_digits(code)) {
        return false;
    }
    if (code >= 0xD800 && code <= 0xDBFF && word("\\u")) {
        unsigned low = 0;
        if (!four_digits(low)) {
            return false;
        }
        beyond_ = beyond_ || low < 0xDC00 || low > 0xDFFF;
        code = 0x10000 + ((code & 0x3FF) << 10) + (low & 0x3FF);
    } else {
        beyond_ = beyond_ || (code >= 0xD800 && code <= 0xDFFF);
    }
    append_code_point(decoded, code);
    return true;
}

bool Reading::text(std::string& decoded) {
    decoded.clear();
    ++at_;
    while (at_ != end_ && *at_ != '"') {
        if (static_cast<unsigned char>(*at_) < 0x20) {
            return false;
        }
        if (*at_ == '\\') {
            ++at_;
            if (!escape(decoded)) {
                return false;
            }
        } else {
            decoded += *at_++;
        }
    }
    return take('"');
}

bool Reading::array(Node& node, int depth) {
    node.kind = Kind::array;
    ++at_;
    blanks();
    if (take(']')) {
        return true;
    }
    do {
        node.items.emplace_back();
        if (!value(node.items.back(), depth + 1)) {
            return false;
        }
        blanks();
    } while (take(','));
    return take(']');
}

bool Reading::object(Node& node, int depth) {
    node.kind = Kind::object;
    ++at_;
    blanks();
    if (take('}')) {
        return true;
    }
    do {
        blanks();
        node.members.emplace_back();
        if (!is('"') || !text(node.members.back().first)) {
            return false;
        }
        blanks();
        if (!take(':') || !value(node.members.back().second, depth + 1)) {
            return false;
        }
        blanks();
    } while (take(','));
    return take('}');
}

} // namespace

double Node::number() const {
    return std::strtod(text.c_str(), nullptr);
}

const Node* Node::find(const std::string& name) const {
    for (auto member = members.rbegin(); member != members.rend(); ++member) {
        if (member->first == name) {
            return &member->second;
        }
    }
    return nullptr;
}

bool operator==(const Node& one, const Node& other) {
    return one.kind == other.kind && one.truth == other.truth && one.text == other.text &&
           one.items == other.items && one.members == other.members;
}

JsonText read_json(const std::string& text, Comments comments) {
    JsonText result;
    Reading reading(text, comments);
    result.good = reading.all(result.root);
    result.beyond_the_library = reading.beyond_the_library();
    return result;
}

} // namespace fuzz

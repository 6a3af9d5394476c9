#include "packaging/diagnostics/redaction.h"

#include <algorithm>
#include <cctype>

namespace diagnostics {

namespace {

const std::string kPath = "<path>";

// Log lines of the plugin that hold a name or paths: what stands between the two parts goes. An empty end:
// the rest.
struct KnownLine {
    const char* begin;
    const char* end;
};
constexpr KnownLine kKnownLines[] = {
    {"Get scene name text down, it is : ", ""},
    {"Backup file from ", " Success!"},
    {"Backup file from ", " Error! Code is"},
};

char lower(char character) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
}

// ASCII letters only; UTF-8 bytes stay as they are.
std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), lower);
    return text;
}

bool is_word(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
}

bool ends_with(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool is_slash(char character) {
    return character == '\\' || character == '/';
}

// The slashes of a web address; any other pair of slashes may be a server's path.
bool starts_web_address(const std::string& text, std::size_t slashes) {
    const std::string before = lowered(text.substr(0, slashes));
    return text.compare(slashes, 2, "//") == 0 && (ends_with(before, "http:") || ends_with(before, "https:"));
}

bool starts_path(const std::string& text, std::size_t at) {
    const auto is = [&text](std::size_t i, bool (*kind)(char)) { return i < text.size() && kind(text[i]); };
    const bool drive = std::isalpha(static_cast<unsigned char>(text[at])) != 0 && at + 1 < text.size() &&
                       text[at + 1] == ':' && is(at + 2, is_slash) && (at == 0 || !is_word(text[at - 1]));
    const bool server =
        is_slash(text[at]) && is(at + 1, is_slash) && at + 2 < text.size() && !starts_web_address(text, at);
    return drive || server;
}

// Paths hold blanks, so where one ends cannot be seen; a quotation mark ends it, otherwise the line does.
std::size_t path_end(const std::string& text, std::size_t at) {
    return std::min(text.find_first_of("\"<>|\r\n", at), text.size());
}

// As Windows compares paths.
std::string comparable(const std::string& path) {
    std::string small = lowered(path);
    std::replace(small.begin(), small.end(), '/', '\\');
    return small;
}

template <typename Change>
std::string each_line(const std::string& lines, Change change) {
    std::string result;
    std::size_t from = 0;
    while (from < lines.size()) {
        const std::size_t end = std::min(lines.find_first_of("\r\n", from), lines.size());
        result += change(lines.substr(from, end - from));
        const std::size_t next = std::min(lines.find_first_not_of("\r\n", end), lines.size());
        result += lines.substr(end, next - end);
        from = next;
    }
    return result;
}

void replace_word(std::string& text, const std::string& word, const std::string& by) {
    const std::string wanted = lowered(word);
    const bool ascii = std::all_of(word.begin(), word.end(), is_word);
    std::size_t at = 0;
    while ((at = lowered(text).find(wanted, at)) != std::string::npos) {
        const std::size_t end = at + wanted.size();
        // Inside a longer word of ASCII letters it is another word; other scripts have no such ends.
        const bool inside =
            ascii && ((at > 0 && is_word(text[at - 1])) || (end < text.size() && is_word(text[end])));
        if (inside) {
            at = end;
        } else {
            text.replace(at, wanted.size(), by);
            at += by.size();
        }
    }
}

} // namespace

Redactor::Redactor(const Secrets& secrets) : secrets_(secrets) {
    for (std::vector<std::string>* list : {&secrets_.own_folders, &secrets_.named_paths}) {
        std::transform(list->begin(), list->end(), list->begin(), comparable);
    }
    for (const std::string& user : secrets_.user_names) {
        names_.push_back({user, "<user>"});
    }
    names_.push_back({secrets_.computer, "<computer>"});
    names_.erase(
        std::remove_if(names_.begin(), names_.end(), [](const Name& name) { return name.text.empty(); }),
        names_.end());
    // A name may hold a shorter one, whose placeholder would leave the rest of the longer.
    std::stable_sort(names_.begin(), names_.end(),
                     [](const Name& one, const Name& other) { return one.text.size() > other.text.size(); });
}

std::string Redactor::placeholder(const std::string& scene) {
    const auto known = scenes_.emplace(lowered(scene), scenes_.size() + 1).first;
    return "<scene " + std::to_string(known->second) + ">";
}

std::string Redactor::known_line(const std::string& text) {
    for (const KnownLine& line : kKnownLines) {
        const std::size_t begin = text.find(line.begin);
        if (begin == std::string::npos) {
            continue;
        }
        const std::size_t from = begin + std::string(line.begin).size();
        const std::string end = line.end;
        const std::size_t to = end.empty() ? text.size() : text.rfind(end);
        if (to != std::string::npos && to >= from) {
            return text.substr(0, from) + placeholder(text.substr(from, to - from)) + text.substr(to);
        }
    }
    return text;
}

// Of our own folders' paths only those in compress name a scene.
std::string Redactor::own_path(const std::string& path) {
    const std::string small = lowered(path);
    for (const char* folder : {"\\compress\\", "/compress/", "\\compress/", "/compress\\"}) {
        const std::size_t at = small.find(folder);
        if (at != std::string::npos && at + std::string(folder).size() < path.size()) {
            return path.substr(0, at + std::string(folder).size()) + "<archive>";
        }
    }
    return path;
}

// How much of the text, from here on, is a path that may stay; 0: nothing.
std::size_t Redactor::own_length(const std::string& text, std::size_t at, Speaker speaker) const {
    std::vector<std::string> wanted = secrets_.own_folders;
    if (speaker == Speaker::diagnostics) {
        wanted.insert(wanted.end(), secrets_.named_paths.begin(), secrets_.named_paths.end());
    }
    std::size_t longest = 0;
    for (const std::string& path : wanted) {
        const std::size_t end = at + path.size();
        // Words may follow only in what we say ourselves: elsewhere they may belong to a longer name.
        const bool ends = end >= path_end(text, at) || is_slash(text[end]) ||
                          (speaker == Speaker::diagnostics && !is_word(text[end]));
        if (ends && comparable(text.substr(at, path.size())) == path) {
            longest = std::max(longest, path.size());
        }
    }
    return longest;
}

std::string Redactor::paths(const std::string& text, Speaker speaker) {
    std::string result;
    std::size_t at = 0;
    while (at < text.size()) {
        if (!starts_path(text, at)) {
            result += text[at++];
            continue;
        }
        const std::size_t end = path_end(text, at);
        const std::size_t own = own_length(text, at, speaker);
        const bool is_own = own != 0;
        // Another path may follow in the same line; then only what is before it is ours.
        std::size_t next = at + own;
        while (is_own && next < end && !starts_path(text, next)) {
            ++next;
        }
        const std::size_t stop = is_own ? std::min(next, end) : end;
        result += is_own ? own_path(text.substr(at, stop - at)) : kPath;
        at = stop;
    }
    return result;
}

// What is left of scene names: from the last sign that cannot be in one, or from the message's start.
std::string Redactor::scene_names(std::string text) {
    const std::string ending = ".max";
    std::size_t from = 0;
    std::size_t at = 0;
    while ((at = lowered(text).find(ending, from)) != std::string::npos) {
        const std::size_t end = at + ending.size();
        if (end < text.size() && is_word(text[end])) {
            from = end;
            continue;
        }
        std::size_t begin = text.find_last_of("\\/:*?\"<>|]", at);
        begin = begin == std::string::npos || begin < from ? from : begin + 1;
        begin = std::min(text.find_first_not_of(' ', begin), at);
        const std::string replacement = placeholder(text.substr(begin, end - begin));
        text.replace(begin, end - begin, replacement);
        from = begin + replacement.size();
    }
    return text;
}

std::string Redactor::people(std::string text) const {
    for (const Name& name : names_) {
        replace_word(text, name.text, name.placeholder);
    }
    return text;
}

std::string Redactor::line(const std::string& text) {
    return people(scene_names(paths(known_line(text), Speaker::anybody)));
}

std::string Redactor::text(const std::string& lines) {
    return each_line(lines, [this](const std::string& text) { return line(text); });
}

std::string Redactor::findings(const std::string& lines) {
    return each_line(lines, [this](const std::string& text) {
        return people(scene_names(paths(text, Speaker::diagnostics)));
    });
}

} // namespace diagnostics

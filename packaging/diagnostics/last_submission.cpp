#include "packaging/diagnostics/last_submission.h"

#include "common/json_text.h"
#include "submit/client_link.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace diagnostics {

namespace {

// A line of the log: a word like `before`, `text` and, when `more`, anything behind.
struct KnownLine {
    const char* channel;
    const char* before;
    const char* text;
    bool more;
    const char* english;
    const char* chinese;
};

constexpr KnownLine kKnownLines[] = {
#include "packaging/diagnostics/log_words.inc"
};

constexpr const char* kPartial = ".tmp";

// The more telling one first. Only these: the lines around them name the file.
constexpr const char* kComplaints[] = {
    "Unexpected end of archive", "CRC Failed",    "Data Error", "Headers Error",
    "Cannot open the file as",   "Is not archive"};

bool is_alnum(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) != 0;
}

bool ends_with(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string without_end(const std::string& text, const std::string& end) {
    return ends_with(text, end) ? text.substr(0, text.size() - end.size()) : text;
}

bool matches(const KnownLine& known, const std::string& channel, const std::string& text) {
    if (channel != known.channel) {
        return false;
    }
    const std::size_t at = text.find(known.text);
    // What stands in front, a function's name, is one of several.
    const bool begins = *known.before != '\0' ? at != std::string::npos : at == 0;
    return begins && (known.more || text == known.text);
}

} // namespace

void read_document(const std::string& text, DocumentFact& document) {
    Json::Value root;
    document.readable = tarvo::ParseJson(text, root) && root.isObject();
    if (!document.readable) {
        return;
    }
    const Json::Value none;
    const Json::Value& name = root.get("name", none);
    document.scene = name.isString() ? name.asString() : std::string();
    const Json::Value& cameras = root.get("cameras", none);
    document.cameras = cameras.isArray() ? cameras.size() : 0;
}

bool is_document_name(const std::string& name) {
    const std::string form = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX.json";
    const std::string digits = "0123456789ABCDEF";
    bool fits = name.size() == form.size();
    for (std::size_t i = 0; fits && i < form.size(); ++i) {
        fits = form[i] == 'X' ? digits.find(name[i]) != std::string::npos : name[i] == form[i];
    }
    return fits;
}

bool is_archive_name(const std::string& name) {
    constexpr std::size_t kTag = 6;
    const std::string whole = without_end(name, kPartial);
    const std::string stem = without_end(whole, ".7z");
    if (stem.size() == whole.size() || stem.size() < kTag + 2 || stem[stem.size() - kTag - 1] != '_') {
        return false;
    }
    return std::all_of(stem.end() - static_cast<std::ptrdiff_t>(kTag), stem.end(), is_alnum);
}

std::string archive_stem(const std::string& name) {
    return name.substr(0, name.rfind('_'));
}

std::string scene_stem(const std::string& path) {
    const std::size_t slash = path.find_last_of("\\/");
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    return name.substr(0, name.rfind('.'));
}

LogLine log_line(const std::string& line) {
    const std::size_t open = line.find(" [");
    const std::size_t close = line.find("] ", open == std::string::npos ? 0 : open);
    if (open == std::string::npos || close == std::string::npos) {
        return {std::string(), std::string(), line};
    }
    return {line.substr(0, open), line.substr(open + 2, close - open - 2), line.substr(close + 2)};
}

LogMeaning log_meaning(const std::string& channel, const std::string& text) {
    const auto found = std::find_if(std::begin(kKnownLines), std::end(kKnownLines),
                                    [&](const KnownLine& known) { return matches(known, channel, text); });
    return found == std::end(kKnownLines) ? LogMeaning() : LogMeaning{found->english, found->chinese};
}

LogMeaning code_meaning(int code) {
    const tarvo::ReplyCode* known = tarvo::FindReplyCode(code);
    return known == nullptr ? LogMeaning() : log_meaning("qfx_http", known->log_text);
}

std::string complaint(const std::string& output) {
    for (const char* phrase : kComplaints) {
        if (output.find(phrase) != std::string::npos) {
            return phrase;
        }
    }
    return std::string();
}

} // namespace diagnostics

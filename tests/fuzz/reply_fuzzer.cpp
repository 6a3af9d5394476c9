// Feeds any bytes to the reading of the client's reply. The heart of it: "submitted" is told about a reply
// whose own top-level "ret" is 10001, and about no other; not about one that was cut off, nor about one that
// lies inside something else.
#include "common/message_box.h"
#include "resources/resource_ids.h"
#include "submit/client_link.h"
#include "tests/fuzz/support/json_tree.h"
#include "tests/fuzz/support/outside.h"
#include "tests/fuzz/support/rule.h"

#include <cstdint>
#include <cstring>
#include <iostream>
#include <limits>
#include <streambuf>
#include <string>

namespace {

using fuzz::JsonText;
using fuzz::Kind;
using fuzz::Node;
using fuzz::outside;
using fuzz::rule;

constexpr int kAccepted = 10001;

// Takes the place of the standard output, on which the product writes a line.
class Counting : public std::streambuf {
public:
    std::size_t written = 0;

private:
    int overflow(int character) override {
        ++written;
        return character == traits_type::eof() ? 0 : character;
    }
    std::streamsize xsputn(const char*, std::streamsize count) override {
        written += static_cast<std::size_t>(count);
        return count;
    }
};

Counting& printed() {
    static Counting counting;
    return counting;
}

enum class Meaning { accepted, other_code, no_code, nothing_shown };

Meaning shown() {
    const fuzz::Outside& seen = outside();
    rule(seen.boxes.size() <= 1, "a reply shows one box at most");
    if (seen.boxes.empty()) {
        rule(seen.lines.empty() && printed().written == 0, "a code that is not known shows and logs nothing");
        return Meaning::nothing_shown;
    }
    const std::wstring& text = seen.boxes.front().text;
    if (text == L"[" + std::to_wstring(IDS_REPLY_NOT_PARSED) + L"]") {
        rule(printed().written > 0, "a reply without a code leaves a line on the standard output");
        rule(!seen.lines.empty() && seen.lines.size() <= 2 && seen.lines.back().level == "ERROR",
             "a reply without a code leaves its line, and before it the library's reason, if there is one");
        return Meaning::no_code;
    }
    rule(printed().written == 0, "only a reply without a code writes to the standard output");
    rule(seen.lines.size() == 1, "a known code leaves one line");
    const bool accepted = text == L"[" + std::to_wstring(IDS_REPLY_ACCEPTED) + L"]";
    rule(accepted == (seen.lines.front().text == "Submit successfully."), "box and line say the same");
    rule(accepted == (seen.lines.front().level == "INFO"), "only acceptance is no error");
    return accepted ? Meaning::accepted : Meaning::other_code;
}

Meaning meaning_of(const std::string& reply) {
    outside().forget();
    printed().written = 0;
    tarvo::HandleClientReply(reply, nullptr);
    return shown();
}

// The table of the agreement with the client, written down apart from the product's.
bool is_known(double code) {
    for (const int known : {10001, 10002, 10003, 10004, 10005, 10006, 10007, 10008, 10009, 11000, 11010}) {
        if (code == known) {
            return true;
        }
    }
    return false;
}

Meaning expected_of_number(double number) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (number < Limits::min() || number > Limits::max()) {
        return Meaning::no_code;
    }
    const auto code = static_cast<std::int32_t>(number);
    return code == kAccepted ? Meaning::accepted
           : is_known(code)  ? Meaning::other_code
                             : Meaning::nothing_shown;
}

// What standard JSON must come to.
Meaning expected(const Node& root) {
    if (root.kind == Kind::null) {
        return Meaning::nothing_shown;
    }
    if (root.kind != Kind::object) {
        return Meaning::no_code;
    }
    const Node* ret = root.find("ret");
    if (ret == nullptr || ret->kind == Kind::null || ret->kind == Kind::truth) {
        return Meaning::nothing_shown;
    }
    return ret->kind == Kind::number ? expected_of_number(ret->number()) : Meaning::no_code;
}

// Also for what is no standard JSON but the library takes: the code stands in the reply as a number.
bool holds_accepted_number(const std::string& reply) {
    for (std::size_t at = 0; at < reply.size(); ++at) {
        if (std::strchr("+-0123456789", reply[at]) != nullptr && reply[at] != '\0') {
            const double number = std::strtod(reply.c_str() + at, nullptr);
            if (number >= kAccepted && number < kAccepted + 1) {
                return true;
            }
        }
    }
    return false;
}

std::size_t mixed(const std::string& text) {
    std::size_t hash = 1469598103934665603u;
    for (const char each : text) {
        hash = (hash ^ static_cast<unsigned char>(each)) * 1099511628211u;
    }
    return hash ^ hash >> 29;
}

void check_cut_off(const std::string& reply) {
    const std::size_t end = reply.find_last_not_of(" \t\r\n");
    const std::string torn = reply.substr(0, mixed(reply) % (end + 1));
    const Meaning meaning = meaning_of(torn);
    rule(meaning == Meaning::no_code, "an object that was cut off has no code");
}

void check_wrapped(const std::string& reply) {
    rule(meaning_of("[" + reply + "]") == Meaning::no_code, "a reply inside an array has no code");
    rule(meaning_of("{\"data\":" + reply + "}") == Meaning::nothing_shown,
         "a reply inside another object is not read");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    std::cout.rdbuf(&printed());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string reply(reinterpret_cast<const char*>(data), size);
    const Meaning meaning = meaning_of(reply);
    rule(meaning != Meaning::accepted || holds_accepted_number(reply),
         "acceptance stands in the reply as a number");
    const JsonText json = fuzz::read_json(reply);
    if (!json.good || json.beyond_the_library) {
        return 0;
    }
    rule(meaning == expected(json.root), "standard JSON means what its top-level \"ret\" says");
    rule(meaning_of(" \r\n\t" + reply + "\n") == meaning, "white space around a reply changes nothing");
    check_wrapped(reply);
    if (json.root.kind == Kind::object) {
        check_cut_off(reply);
    }
    return 0;
}

#include "tests/fuzz/support/notices.h"

#include "standin/base/text.h"

#include <algorithm>
#include <cstdlib>

namespace fuzz {

namespace {

// Numbers of the string table, written down apart from the product's.
enum TextNumber {
    kMissingFile = 60,
    kSameFile = 61,
    kMissingHeading = 62,
    kSameHeading = 63,
    kCoronaBlocks = 73,
    kRegion = 75,
    kError107 = 77,
    kHeading = 78,
    kCyrillic = 80
};

class Expected {
public:
    explicit Expected(std::vector<std::wstring>& notices) : notices_(notices) {}

    void all(const Node& analysis) {
        corona(member(analysis, "corona_setting"));
        if (text(member(analysis, "is_region")) == "true") {
            notice(kRegion);
        }
        cyrillic(member(analysis, "reference_file"));
        errors(member(analysis, "errors"));
        files(member(analysis, "missing_file"), kMissingHeading, kMissingFile);
        files(member(analysis, "same_file"), kSameHeading, kSameFile);
    }
    bool sure() const { return sure_; }

private:
    static const Node& member(const Node& object, const char* name) {
        static const Node null;
        const Node* found = object.find(name);
        return found == nullptr ? null : *found;
    }

    std::string text(const Node& node) {
        if (node.kind == Kind::number) {
            sure_ = sure_ && node.text.find_first_of(".eE") == std::string::npos && node.text.size() < 10 &&
                    node.text != "-0";
        }
        return node.kind == Kind::truth ? (node.truth ? "true" : "false") : node.text;
    }
    std::wstring wide(const Node& node) { return base::to_wide(text(node).c_str()); }

    void line(TextNumber number, const std::wstring& rest = std::wstring()) {
        notices_.push_back(L"[" + std::to_wstring(number) + L"]" + rest);
    }
    void notice(TextNumber number) {
        if (first_) {
            line(kHeading);
            first_ = false;
        }
        line(number);
    }

    void corona(const Node& limits) {
        for (const char* limit : {"pass_limit", "time_limit", "noise_level_limit"}) {
            if (limits.find(limit) == nullptr) {
                return;
            }
        }
        if (text(member(limits, "pass_limit")) == "0" && text(member(limits, "noise_level_limit")) == "0") {
            notice(kCoronaBlocks);
        }
    }
    void cyrillic(const Node& files) {
        const auto is_cyrillic = [](wchar_t unit) { return unit >= 0x400 && unit <= 0x52F; };
        for (const Node& file : files.items) {
            const std::wstring path = wide(member(file, "path"));
            if (std::any_of(path.begin(), path.end(), is_cyrillic)) {
                notice(kCyrillic);
                return;
            }
        }
    }
    void errors(const Node& errors) {
        for (const Node& error : member(errors, "error_code").items) {
            if (std::strtol(text(member(error, "code")).c_str(), nullptr, 10) == 107) {
                notice(kError107);
            }
        }
    }
    void files(const Node& list, TextNumber heading, TextNumber prefix) {
        if (!list.items.empty()) {
            line(heading);
        }
        for (const Node& file : list.items) {
            line(prefix, wide(member(file, "path")));
        }
    }

    std::vector<std::wstring>& notices_;
    bool first_ = true;
    bool sure_ = true;
};

} // namespace

bool expected_notices(const Node& analysis, std::vector<std::wstring>& notices) {
    Expected expected(notices);
    expected.all(analysis);
    return expected.sure();
}

} // namespace fuzz

#include "tests/fuzz/support/outside.h"

#include "common/logger.h"
#include "common/message_box.h"
#include "common/platform.h"
#include "host/host.h"

#include <cwctype>
#include <utility>

namespace fuzz {

Outside& outside() {
    static Outside the_outside;
    return the_outside;
}

} // namespace fuzz

namespace {

std::wstring trimmed(const std::wstring& text) {
    const std::wstring::size_type first = text.find_first_not_of(L" \t\r");
    if (first == std::wstring::npos) {
        return std::wstring();
    }
    return text.substr(first, text.find_last_not_of(L" \t\r") - first + 1);
}

bool same_name(const std::wstring& one, const std::wstring& other) {
    if (one.size() != other.size()) {
        return false;
    }
    for (std::wstring::size_type at = 0; at < one.size(); ++at) {
        if (std::towlower(static_cast<std::wint_t>(one[at])) !=
            std::towlower(static_cast<std::wint_t>(other[at]))) {
            return false;
        }
    }
    return true;
}

// A pair of quotation marks around a value is no part of it.
std::wstring unquoted(const std::wstring& value) {
    const bool quoted = value.size() >= 2 && (value.front() == L'"' || value.front() == L'\'') &&
                        value.back() == value.front();
    return quoted ? value.substr(1, value.size() - 2) : value;
}

// The next line of `text` from `at` on; a zero ends the file.
std::wstring next_line(const std::wstring& text, std::wstring::size_type& at) {
    const std::wstring::size_type end = text.find(L'\n', at);
    const std::wstring line = text.substr(at, end == std::wstring::npos ? end : end - at);
    at = end == std::wstring::npos ? text.size() : end + 1;
    return line;
}

} // namespace

namespace tarvo {

std::wstring ReadProfileText(const std::wstring&, const std::wstring& section, const std::wstring& key) {
    constexpr std::wstring::size_type kLongest = 2047;
    const std::wstring text = fuzz::outside().ini.c_str();
    bool inside = false;
    for (std::wstring::size_type at = 0; at < text.size();) {
        const std::wstring line = trimmed(next_line(text, at));
        const std::wstring::size_type equals = line.find(L'=');
        if (!line.empty() && line.front() == L'[') {
            inside = same_name(line.substr(1, line.find(L']') - 1), section);
        } else if (inside && equals != std::wstring::npos &&
                   same_name(trimmed(line.substr(0, equals)), key)) {
            return unquoted(trimmed(line.substr(equals + 1))).substr(0, kLongest);
        }
    }
    return std::wstring();
}

std::wstring CommonAppDataFolder() {
    return L"C:\\ProgramData";
}
std::wstring ProgramFolder() {
    return L"C:\\Program Files\\Host";
}
long long SecondsSinceEpoch() {
    return 1542801600;
}
unsigned long LastErrorCode() {
    return 12002;
}
bool PathExists(const std::wstring&) {
    return true;
}
bool PathExists(const std::string&) {
    return true;
}
bool CreateFolder(const std::wstring&) {
    return true;
}
bool CreateFolder(const std::string&) {
    return true;
}
bool HasDoubleByteConsole() {
    return true;
}

FileIdentity FileIdentityOf(const std::wstring&) {
    return FileIdentity();
}
bool IsNameTaken(const std::wstring&) {
    return false;
}
unsigned long RemoveForeign(const std::wstring&, const OwnFile&) {
    return 0;
}

std::wstring SceneFilePath() {
    return fuzz::outside().scene_path;
}

int ShowSystemBox(WindowHandle, const std::wstring& text, const std::wstring& caption, unsigned,
                  unsigned short) {
    fuzz::outside().boxes.push_back({text, caption});
    return kAnswerOk;
}

// The logger without its file.
void WriteErrorLine(const LogChannel&, const std::string& message) {
    fuzz::outside().lines.push_back({message, kError});
}
Logger::Logger() = default;
Logger::Logger(const LogChannel&) {}
void Logger::Open(std::string) {}
void Logger::Write(std::string message, std::string level) {
    fuzz::outside().lines.push_back({std::move(message), std::move(level)});
}

} // namespace tarvo

#include "standin/client/options.h"
#include "standin/client/text.h"

#include <cerrno>
#include <cwchar>

namespace desktop_client {

namespace {

struct ModeEntry {
    const wchar_t* name;
    Mode mode;
    bool impolite;
    bool own_body; // what --reply, --body and --body-file say would never be sent
    const char* help;
};

constexpr ModeEntry kModes[] = {
    {L"reply", Mode::reply, false, false, "answers with status 200 (the default)"},
    {L"status-500", Mode::status_500, false, false, "answers with status 500"},
    {L"chunked", Mode::chunked, false, false, "sends the answer in HTTP chunks"},
    {L"empty", Mode::empty, false, true, "answers with status 200 and no body"},
    {L"garbage", Mode::garbage, false, true, "answers with something that is not JSON"},
    {L"big", Mode::big, false, true, "answers with 10 MB"},
    {L"close", Mode::close, true, true, "accepts and closes without reading"},
    {L"close-after-header", Mode::close_after_header, true, false, "closes after the answer's header"},
    {L"pieces", Mode::pieces, true, false, "sends the body in two packets, a second apart"},
    {L"bytes", Mode::bytes, true, false, "sends the answer one byte at a time"},
    {L"silence", Mode::silence, true, true, "reads, never answers, and closes after --delay"},
    {L"no-length", Mode::no_length, true, false, "answers without a length, and closes"},
};

class Parser {
public:
    explicit Parser(Options& options) : options_(options) {}

    bool run(const std::vector<std::wstring>& arguments, std::string& problem);

private:
    using Setter = bool (Parser::*)(const std::wstring& value);
    struct ValueOption {
        const wchar_t* name;
        Setter set;
        const char* expects;
    };
    static const ValueOption kValueOptions[];

    bool take_value(const std::wstring& name, const std::wstring* value);
    bool whole_is_consistent();

    bool set_port(const std::wstring& value);
    bool set_reply(const std::wstring& value);
    bool set_body(const std::wstring& value);
    bool set_body_file(const std::wstring& value);
    bool set_delay(const std::wstring& value);
    bool set_mode(const std::wstring& value);
    bool set_ready(const std::wstring& value) { return set_path(options_.ready_file, value); }
    bool set_record(const std::wstring& value) { return set_path(options_.record_file, value); }
    bool set_stop(const std::wstring& value) { return set_path(options_.stop_file, value); }
    bool set_seven_zip(const std::wstring& value) { return set_path(options_.seven_zip, value); }
    static bool set_path(std::wstring& target, const std::wstring& value);

    Options& options_;
    const ModeEntry* mode_ = &kModes[0];
    int bodies_ = 0;
    std::string problem_;
};

const Parser::ValueOption Parser::kValueOptions[] = {
    {L"--port", &Parser::set_port, "a number from 0 to 65535"},
    {L"--reply", &Parser::set_reply, "a whole number"},
    {L"--body", &Parser::set_body, "a text"},
    {L"--body-file", &Parser::set_body_file, "a file"},
    {L"--delay", &Parser::set_delay, "milliseconds, at most a day"},
    {L"--mode", &Parser::set_mode, "one of the modes that --help lists"},
    {L"--ready", &Parser::set_ready, "a file"},
    {L"--record", &Parser::set_record, "a file"},
    {L"--stop", &Parser::set_stop, "a file"},
    {L"--seven-zip", &Parser::set_seven_zip, "a file"},
};

bool parse_number(const std::wstring& text, long long low, long long high, long long& number) {
    wchar_t* end = nullptr;
    errno = 0;
    number = std::wcstoll(text.c_str(), &end, 10);
    return !text.empty() && *end == L'\0' && errno == 0 && number >= low && number <= high;
}

bool Parser::set_port(const std::wstring& value) {
    long long number = 0;
    if (!parse_number(value, 0, 65535, number)) {
        return false;
    }
    options_.port = static_cast<int>(number);
    return true;
}

bool Parser::set_reply(const std::wstring& value) {
    long long number = 0;
    if (!parse_number(value, INT64_MIN, INT64_MAX, number)) {
        return false;
    }
    options_.reply_body = "{\"ret\":" + std::to_string(number) + "}";
    ++bodies_;
    return true;
}

bool Parser::set_body(const std::wstring& value) {
    options_.reply_body = wide_to_utf8(value);
    ++bodies_;
    return true;
}

bool Parser::set_body_file(const std::wstring& value) {
    ++bodies_;
    return set_path(options_.body_file, value);
}

bool Parser::set_delay(const std::wstring& value) {
    long long number = 0;
    if (!parse_number(value, 0, 24 * 60 * 60 * 1000, number)) {
        return false;
    }
    options_.delay_ms = static_cast<unsigned>(number);
    return true;
}

bool Parser::set_mode(const std::wstring& value) {
    for (const ModeEntry& entry : kModes) {
        if (value == entry.name) {
            mode_ = &entry;
            options_.mode = entry.mode;
            options_.mode_name = wide_to_utf8(value);
            return true;
        }
    }
    return false;
}

bool Parser::set_path(std::wstring& target, const std::wstring& value) {
    target = value;
    return !value.empty();
}

bool Parser::take_value(const std::wstring& name, const std::wstring* value) {
    for (const ValueOption& option : kValueOptions) {
        if (name != option.name) {
            continue;
        }
        if (value != nullptr && (this->*option.set)(*value)) {
            return true;
        }
        problem_ = wide_to_utf8(name) + " needs " + option.expects;
        problem_ += value == nullptr ? std::string() : ", not '" + wide_to_utf8(*value) + "'";
        return false;
    }
    problem_ = "unknown option '" + wide_to_utf8(name) + "'";
    return false;
}

bool Parser::whole_is_consistent() {
    if (bodies_ > 1) {
        problem_ = "only one of --reply, --body and --body-file can be given";
        return false;
    }
    if (bodies_ > 0 && mode_->own_body) {
        problem_ = "mode " + options_.mode_name + " never sends what --reply, --body or --body-file say";
        return false;
    }
    return true;
}

bool Parser::run(const std::vector<std::wstring>& arguments, std::string& problem) {
    bool good = true;
    for (size_t i = 0; i < arguments.size() && good; ++i) {
        if (arguments[i] == L"--once") {
            options_.once = true;
        } else if (arguments[i] == L"--help") {
            options_.help = true;
        } else {
            good = take_value(arguments[i], i + 1 < arguments.size() ? &arguments[i + 1] : nullptr);
            ++i;
        }
    }
    good = good && whole_is_consistent();
    problem = problem_;
    return good;
}

} // namespace

bool is_impolite(Mode mode) {
    for (const ModeEntry& entry : kModes) {
        if (entry.mode == mode) {
            return entry.impolite;
        }
    }
    return false;
}

bool parse_options(const std::vector<std::wstring>& arguments, Options& options, std::string& problem) {
    return Parser(options).run(arguments, problem);
}

std::string usage() {
    std::string text = "client: stands in for the farm's desktop client; listens on 127.0.0.1.\n"
                       "  --port N         port; 0 (the default) picks a free one\n"
                       "  --reply CODE     answers {\"ret\":CODE}; 10001, the default, accepts the job\n"
                       "  --body TEXT      answers with this text instead\n"
                       "  --body-file FILE answers with this file's bytes instead\n"
                       "  --delay MS       waits before the answer\n"
                       "  --mode NAME      how it answers, see below\n"
                       "  --ready FILE     gets the port number once the client listens\n"
                       "  --record FILE    gets one JSON object per request, one per line\n"
                       "  --stop FILE      ends the client when this file appears (Ctrl-C does too)\n"
                       "  --seven-zip FILE 7z.exe for the test of the archive; by default the installed one\n"
                       "  --once           ends after one request\n"
                       "modes:\n";
    for (const ModeEntry& entry : kModes) {
        std::string name = wide_to_utf8(entry.name);
        name.resize(18, ' ');
        text += "  " + name + " " + entry.help + "\n";
    }
    return text;
}

} // namespace desktop_client

#include "packaging/diagnostics/bundle_win32.h"

#include "packaging/diagnostics/wide_text_win32.h"

#include <algorithm>

namespace diagnostics {

namespace {

constexpr unsigned long kLogBytes = 256 * 1024; // of each file

bool is_log(const std::string& path) {
    return path.size() > 4 && path.compare(path.size() - 4, 4, ".log") == 0;
}

std::string after_last(const std::string& path, char separator) {
    return path.substr(path.rfind(separator) + 1);
}

// Line by line: the plugin writes one kind of line in UTF-8 and the others in a code page.
std::string log_text(const std::string& bytes) {
    std::string text;
    std::size_t from = 0;
    while (from < bytes.size()) {
        const std::size_t end = std::min(bytes.find('\n', from), bytes.size() - 1) + 1;
        text += text_to_utf8(bytes.substr(from, end - from));
        from = end;
    }
    return text;
}

} // namespace

Bundle::Bundle(const tarvo::LocalTime& now, const Secrets& secrets, bool unredacted)
    : zip_(now.year, now.month, now.day, now.hour, now.minute, now.second), redactor_(secrets),
      unredacted_(unredacted) {}

void Bundle::add(const std::string& name, const std::string& text) {
    zip_.add(name, unredacted_ ? text : redactor_.text(text));
}

std::string Bundle::hidden(const Argument& argument) {
    switch (argument.origin) {
    case Origin::ours:
        break;
    case Origin::user:
        return redactor_.line(argument.text);
    case Origin::archive:
        return "<archive>";
    }
    return argument.text;
}

void Bundle::add_findings(const std::string& name, const std::vector<Finding>& findings, Language language) {
    if (unredacted_) {
        zip_.add(name, summary_text(findings, language));
        return;
    }
    const Hide hide = [this](const Argument& argument) { return hidden(argument); };
    zip_.add(name, redactor_.findings(summary_text(findings, language, hide)));
}

void Bundle::add_logs(const std::vector<Entry>& entries) {
    for (const Entry& entry : entries) {
        const std::string path = to_utf8(entry.path);
        if (!entry.is_folder && is_log(path)) {
            const std::string folder = after_last(path.substr(0, path.rfind('\\')), '\\');
            add(folder + "/" + after_last(path, '\\'), log_text(file_tail(entry.path, kLogBytes)));
        }
    }
}

std::string listing(const std::vector<Entry>& entries) {
    std::string text;
    for (const Entry& entry : entries) {
        text += entry.written + "  " + (entry.is_folder ? "<folder>" : std::to_string(entry.size)) + "  " +
                to_utf8(entry.path) + "\r\n";
    }
    return text;
}

} // namespace diagnostics

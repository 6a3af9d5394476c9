#include "packaging/diagnostics/options_win32.h"

#include "packaging/diagnostics/wide_text_win32.h"

#include <windows.h>

#include <cwchar>
#include <vector>

#include <shellapi.h>

namespace diagnostics {

namespace {

constexpr unsigned kMostDays = 36500;

std::vector<std::wstring> arguments() {
    int count = 0;
    LPWSTR* list = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<std::wstring> all;
    for (int i = 1; list != nullptr && i < count; ++i) {
        all.emplace_back(list[i]);
    }
    ::LocalFree(list);
    return all;
}

bool parse_days(const std::wstring& text, unsigned& days) {
    if (text.empty() || text.size() > 5 || text.find_first_not_of(L"0123456789") != std::wstring::npos) {
        return false;
    }
    days = static_cast<unsigned>(std::wcstoul(text.c_str(), nullptr, 10));
    return days > 0 && days <= kMostDays;
}

bool parse_language(const std::wstring& text, Language& language) {
    language = text == L"zh" ? Language::chinese : Language::english;
    return text == L"zh" || text == L"en";
}

bool take_switch(const std::wstring& argument, Options& options) {
    if (argument == L"--help" || argument == L"/?") {
        options.help = true;
    } else if (argument == L"--unredacted") {
        options.unredacted = true;
    } else {
        return false;
    }
    return true;
}

bool take_value(const std::wstring& name, const std::wstring& value, Options& options) {
    if (name == L"--out") {
        options.out = value;
        return !value.empty();
    }
    return (name == L"--language" && parse_language(value, options.language)) ||
           (name == L"--clean-older-than" && parse_days(value, options.clean_days));
}

} // namespace

Language system_language() {
    return PRIMARYLANGID(::GetUserDefaultUILanguage()) == LANG_CHINESE ? Language::chinese
                                                                       : Language::english;
}

bool parse(Options& options, std::string& bad) {
    options.language = system_language();
    const std::vector<std::wstring> all = arguments();
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (take_switch(all[i], options)) {
            continue;
        }
        const bool has_value = i + 1 < all.size();
        if (!has_value || !take_value(all[i], all[i + 1], options)) {
            bad = to_utf8(all[i]);
            return false;
        }
        ++i;
    }
    return true;
}

} // namespace diagnostics

#include "standin/base/arguments.h"

#include "standin/base/text.h"

#include <algorithm>

namespace base {

CLI::Option* add_path(CLI::App& app, const std::string& name, std::wstring& target, const std::string& help) {
    return app
        .add_option_function<std::string>(
            name, [&target](const std::string& value) { target = to_wide(value); }, help)
        ->check([](const std::string& value) { return value.empty() ? "the value is empty" : ""; }, "PATH",
                "");
}

Arguments parse_arguments(CLI::App& app, const std::vector<std::wstring>& arguments, std::string& text) {
    std::vector<std::string> utf8;
    std::transform(arguments.begin(), arguments.end(), std::back_inserter(utf8),
                   [](const std::wstring& argument) { return to_utf8(argument); });
    // The library reads the vector from its end.
    std::reverse(utf8.begin(), utf8.end());
    try {
        app.parse(std::move(utf8));
        return Arguments::good;
    } catch (const CLI::CallForHelp&) {
        text = app.help();
        return Arguments::help;
    } catch (const CLI::ParseError& error) {
        text = error.what();
        return Arguments::bad;
    }
}

} // namespace base

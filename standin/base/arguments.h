// Command lines through CLI11. Option values are UTF-8 inside the library and wide paths outside.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace base {

// Adds an option for a path, which must not be empty, and stores it in `target`.
CLI::Option* add_path(CLI::App& app, const std::string& name, std::wstring& target, const std::string& help);

enum class Arguments { good, help, bad };

// `arguments` without the program's name. On `help`, `text` is the help page; on `bad`, an error message.
Arguments parse_arguments(CLI::App& app, const std::vector<std::wstring>& arguments, std::string& text);

} // namespace base

// Takes out of texts that leave the machine what they say about people and their work: user names, the
// computer's name, paths outside the plugin's own folders, names of scenes and archives. Rather too much than
// too little.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace diagnostics {

struct Secrets {
    std::vector<std::string> user_names; // UTF-8, as all texts here
    std::string computer;
    std::vector<std::string> own_folders; // with backslashes, none at the end; paths below them stay
    std::vector<std::string> named_paths; // findings may name these as well: C:\ProgramData\Tarvo.exe
};

class Redactor {
public:
    explicit Redactor(const Secrets& secrets);

    // One line without its end. The same scene is always replaced by the same placeholder.
    std::string line(const std::string& text);

    // Each line of a text; their ends stay.
    std::string text(const std::string& lines);

    // The same for what the diagnostics say themselves: the own folders and the named paths stay, and so do
    // the words behind them.
    std::string findings(const std::string& lines);

private:
    enum class Speaker { anybody, diagnostics };

    std::string placeholder(const std::string& scene);
    std::string known_line(const std::string& text);
    std::size_t own_length(const std::string& text, std::size_t at, Speaker speaker) const;
    std::string paths(const std::string& text, Speaker speaker);
    std::string scene_names(std::string text);
    std::string own_path(const std::string& path);
    std::string people(std::string text) const;

    struct Name {
        std::string text;
        std::string placeholder;
    };

    Secrets secrets_;
    std::vector<Name> names_; // of people and the computer, the longest first
    std::map<std::string, std::size_t> scenes_;
};

} // namespace diagnostics

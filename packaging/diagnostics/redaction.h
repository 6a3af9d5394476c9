// Takes out of texts that leave the machine what they say about people and their work: user names, the
// computer's name, paths outside the plugin's own folder, names of scenes and archives. Rather too much than
// too little.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace diagnostics {

struct Secrets {
    std::vector<std::string> user_names; // UTF-8, as all texts here
    std::string computer;
    std::string own_folder; // paths below it stay: C:\ProgramData\Tarvo Rendering
};

class Redactor {
public:
    explicit Redactor(const Secrets& secrets) : secrets_(secrets) {}

    // One line without its end. The same scene is always replaced by the same placeholder.
    std::string line(const std::string& text);

    // Each line of a text; their ends stay.
    std::string text(const std::string& lines);

private:
    std::string placeholder(const std::string& scene);
    std::string known_line(const std::string& text);
    std::string paths(const std::string& text);
    std::string scene_names(std::string text);
    std::string own_path(const std::string& path);
    std::string people(std::string text) const;

    Secrets secrets_;
    std::map<std::string, std::size_t> scenes_;
};

} // namespace diagnostics

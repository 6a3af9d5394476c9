// The texts of the diagnostics in both languages (messages.def).
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace diagnostics {

enum class Language { english, chinese };

enum class Message {
#define MESSAGE(name, english, chinese) name,
#include "packaging/diagnostics/messages.def"
#undef MESSAGE
};

// What an argument of a message may reveal when the text leaves the machine.
enum class Origin {
    ours,    // our own words, own paths, numbers
    user,    // a log line, a scene: may hold names and paths
    archive, // the name of a packed scene, which is the scene's
};

struct Argument {
    Argument(std::string english, Origin from = Origin::ours, std::string other = std::string())
        : text(std::move(english)), origin(from), chinese(std::move(other)) {}

    std::string text; // UTF-8
    Origin origin;
    std::string chinese; // where it differs; otherwise empty
};

struct Sentence {
    Sentence(Message what = Message::nothing, std::vector<Argument> with = {})
        : message(what), arguments(std::move(with)) {}

    Message message;
    std::vector<Argument> arguments;
};

// Replaces an argument by what may be told elsewhere. Without one, arguments stay as they are.
using Hide = std::function<std::string(const Argument&)>;

// UTF-8.
std::string rendered(const Sentence& sentence, Language language, const Hide& hide = Hide());
std::string text(Message message, Language language, const std::vector<Argument>& arguments = {});

// The pattern of the message, with its placeholders.
const char* pattern(Message message, Language language);
std::size_t message_count();

} // namespace diagnostics

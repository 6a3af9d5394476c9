#include "packaging/diagnostics/messages.h"

#include <iterator>

namespace diagnostics {

namespace {

struct Pattern {
    const char* english;
    const char* chinese;
};

constexpr Pattern kPatterns[] = {
#define MESSAGE(name, english, chinese) {english, chinese},
#include "packaging/diagnostics/messages.def"
#undef MESSAGE
};

} // namespace

const char* pattern(Message message, Language language) {
    const Pattern& row = kPatterns[static_cast<std::size_t>(message)];
    return language == Language::chinese ? row.chinese : row.english;
}

std::size_t message_count() {
    return std::end(kPatterns) - std::begin(kPatterns);
}

std::string rendered(const Sentence& sentence, Language language, const Hide& hide) {
    const std::string with_places = pattern(sentence.message, language);
    std::string result;
    for (std::size_t at = 0; at < with_places.size(); ++at) {
        const bool place =
            with_places[at] == '{' && at + 2 < with_places.size() && with_places[at + 2] == '}';
        const std::size_t number = place ? static_cast<std::size_t>(with_places[at + 1] - '0') : 0;
        if (!place || number >= sentence.arguments.size()) {
            result += with_places[at];
            continue;
        }
        const Argument& argument = sentence.arguments[number];
        const bool translated = language == Language::chinese && !argument.chinese.empty();
        result += translated ? argument.chinese : hide ? hide(argument) : argument.text;
        at += 2;
    }
    return result;
}

std::string text(Message message, Language language, const std::vector<Argument>& arguments) {
    return rendered({message, arguments}, language);
}

} // namespace diagnostics

// Names with wildcards.
#pragma once

#include <cstddef>

namespace base {

// Whether the whole of `text` matches: `*` any number of units, `?` one. Goes back to the last `*` only, so
// the work is at most text times pattern; `on_retry` gets the number of units of each step back.
template <class Text, class OnRetry>
bool matches_wildcards(const Text& text, const Text& pattern, OnRetry on_retry) {
    std::size_t at = 0;
    std::size_t in_pattern = 0;
    std::size_t star = Text::npos;
    std::size_t star_at = 0;
    while (at < text.size()) {
        if (in_pattern < pattern.size() && pattern[in_pattern] == '*') {
            star = in_pattern++;
            star_at = at;
        } else if (in_pattern < pattern.size() &&
                   (pattern[in_pattern] == '?' || pattern[in_pattern] == text[at])) {
            ++at;
            ++in_pattern;
        } else if (star != Text::npos) {
            on_retry(at - star_at);
            in_pattern = star + 1;
            at = ++star_at;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', in_pattern) == Text::npos;
}

template <class Text>
bool matches_wildcards(const Text& text, const Text& pattern) {
    return matches_wildcards(text, pattern, [](std::size_t) {});
}

} // namespace base

// The words of a script.
#pragma once

#include "standin/maxscript/script_error.h"

namespace maxscript {

// A place without ownership; the compiler owns the file's name.
struct Spot {
    const Text* file = nullptr;
    int line = 0;
    int column = 0;
};

// The same for an error, which may outlive the text.
Place place_of(const Spot& spot);

enum class TokenKind : std::uint8_t {
    end,
    newline,
    semicolon,
    word,        // a name of a variable or a reserved word
    quoted_word, // 'any text', never a reserved word
    keyword,     // name: as it stands before an argument, and after a label of case
    number,      // value
    string,      // text
    name,        // #abc
    symbol,      // text
    error        // text is the sentence; stops the parser when it gets there
};

// The text of the number 2147483648, which only a minus before it makes an Integer.
constexpr char16_t kNeedsMinus[] = u"-";

struct Token {
    TokenKind kind = TokenKind::end;
    Text text;   // of words as written
    Text folded; // of words
    Value value; // of numbers
    Spot spot;
    bool blank_before = false;
    bool blank_after = false;
};

// Always ends with an `end` token, or an `error`. Line ends are tokens, comments and joined lines are gone.
std::vector<Token> read_tokens(const Text& source, const Text* file_name);

} // namespace maxscript

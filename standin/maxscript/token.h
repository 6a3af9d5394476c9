// The tokens of a script.
#pragma once

#include "standin/maxscript/script_error.h"

namespace maxscript {

enum class TokenKind : std::uint8_t {
    end,
    newline,
    semicolon,
    word,        // a variable's name or a reserved word
    quoted_word, // 'any text', never a reserved word
    keyword,     // name: before an argument, and after a label of case
    number,      // value
    string,      // text
    name,        // #abc
    symbol,      // text and folded
    error        // text is the message; the parser fails when it reads this token
};

// The text of the number 2147483648, which is an Integer only behind a minus.
constexpr char16_t kNeedsMinus[] = u"-";

struct Token {
    TokenKind kind = TokenKind::end;
    Text text;   // of words as written
    Text folded; // of words and symbols
    Value value; // of numbers
    Spot spot;
    bool blank_before = false;
    bool blank_after = false;
};

// The last token is an `end` or an `error`. Line ends are tokens; comments are not.
std::vector<Token> read_tokens(const Text& source, const Text* file_name);

bool is_unsupported(const Token& token); // a statement that the shipped scripts do not use
bool is_reserved(const Token& token);
bool is_name(const Token& token); // of a variable, a function, a member
Text shown(const Token& token);   // in messages

} // namespace maxscript

// Cuts a script into words. Internal to the language; see token.h for the result.
#pragma once

#include "standin/maxscript/token.h"

namespace maxscript {

bool is_digit(char16_t unit);
int hex_digit(char16_t unit); // below 0: it is none
bool is_word_unit(char16_t unit);

class Lexer {
public:
    Lexer(const Text& source, const Text* file_name);
    std::vector<Token> run();

private:
    bool at_end() const { return at_ >= source_.size(); }
    char16_t peek(std::size_t ahead = 0) const; // 0 behind the end
    char16_t take();
    Spot here() const;
    Token& add(TokenKind kind, const Spot& spot);
    void add_error(const Spot& spot, const char16_t* message);

    void skip_blanks();
    bool skip_comment();
    void read_token(bool blank_before);
    void read_word(const Spot& spot);
    bool read_bare(TokenKind kind, const Spot& spot);
    void read_symbol(const Spot& spot);

    void read_number(const Spot& spot);
    void read_hex_number(const Spot& spot);
    void read_integer(const Spot& spot, const std::string& digits);
    void scan_decimal(std::string& digits, bool& is_real);
    void read_string(const Spot& spot);
    void read_escape(Text& text);

    const Text& source_;
    const Text* file_name_;
    std::size_t at_ = 0;
    int line_ = 1;
    std::size_t line_start_ = 0;
    std::vector<Token> tokens_;
};

} // namespace maxscript

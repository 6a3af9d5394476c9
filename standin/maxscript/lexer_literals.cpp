// Numbers and strings.
#include "standin/maxscript/lexer.h"

#include <cerrno>
#include <cstdlib>

namespace maxscript {

// Digits with an optional fraction.
void Lexer::scan_decimal(std::string& digits, bool& is_real) {
    while (is_digit(peek())) {
        digits += static_cast<char>(take());
    }
    if (peek() == u'.') {
        is_real = true;
        digits += static_cast<char>(take());
        while (is_digit(peek())) {
            digits += static_cast<char>(take());
        }
    }
}

void Lexer::read_number(const Spot& spot) {
    if (peek() == u'0' && lower_unit(peek(1)) == u'x' && hex_digit(peek(2)) >= 0) {
        read_hex_number(spot);
        return;
    }
    std::string digits;
    bool is_real = false;
    scan_decimal(digits, is_real);
    if (peek() == u'L' && !is_real) {
        take();
        errno = 0;
        const long long number = std::strtoll(digits.c_str(), nullptr, 10);
        add(TokenKind::number, spot).value = Value::integer64(number);
        if (errno == ERANGE) {
            tokens_.pop_back();
            add_error(spot, u"the number does not fit into an Integer64");
        }
    } else if (is_real) {
        add(TokenKind::number, spot).value = Value::real(std::strtof(digits.c_str(), nullptr));
    } else {
        read_integer(spot, digits);
    }
    if (is_word_unit(peek()) && tokens_.back().kind != TokenKind::error) {
        tokens_.pop_back();
        add_error(spot, u"a name cannot begin with a digit");
    }
}

void Lexer::read_integer(const Spot& spot, const std::string& digits) {
    errno = 0;
    const long long number = std::strtoll(digits.c_str(), nullptr, 10);
    // One more than the greatest is for the minus before it.
    if (errno == ERANGE || number > 2147483648LL) {
        add_error(spot, u"the number does not fit into an Integer (an Integer64 ends with L)");
        return;
    }
    Token& token = add(TokenKind::number, spot);
    token.value = Value::integer(static_cast<std::int32_t>(static_cast<std::uint32_t>(number)));
    if (number == 2147483648LL) {
        token.text.assign(1, u'-'); // kNeedsMinus
    }
}

void Lexer::read_hex_number(const Spot& spot) {
    take();
    take();
    std::uint32_t number = 0;
    int count = 0;
    for (; hex_digit(peek()) >= 0; ++count) {
        number = (number << 4) | static_cast<std::uint32_t>(hex_digit(take()));
    }
    if (count > 8) {
        add_error(spot, u"the number does not fit into an Integer");
        return;
    }
    add(TokenKind::number, spot).value = Value::integer(static_cast<std::int32_t>(number));
}

void Lexer::read_string(const Spot& spot) {
    const bool verbatim = take() == u'@';
    if (verbatim) {
        take();
    }
    Text text;
    while (!at_end() && peek() != u'"') {
        if (peek() == u'\\' && !verbatim) {
            take();
            read_escape(text);
        } else {
            const char16_t unit = take();
            // A text file's line end is one character in a literal.
            if (unit != u'\r' || peek() != u'\n') {
                text += unit;
            }
        }
    }
    if (at_end()) {
        add_error(spot, u"unterminated string");
        return;
    }
    take();
    add(TokenKind::string, spot).text = std::move(text);
}

// Behind the backslash. Before anything that is no escape the backslash is itself.
void Lexer::read_escape(Text& text) {
    static const Text marks = u"\"nrt*?\\%";
    static const Text meanings = u"\"\n\r\t*?\\%";
    const std::size_t known = at_end() ? Text::npos : marks.find(peek());
    if (known != Text::npos) {
        take();
        text += meanings[known];
        return;
    }
    if (peek() != u'x' || hex_digit(peek(1)) < 0) {
        text += u'\\';
        return;
    }
    take();
    std::uint32_t unit = 0;
    // As many digits as there are: "\x41b" is one character.
    while (hex_digit(peek()) >= 0) {
        unit = (unit << 4) | static_cast<std::uint32_t>(hex_digit(take()));
    }
    text += static_cast<char16_t>(unit);
}

} // namespace maxscript

// Splits a script into tokens.
#include "standin/maxscript/token.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

namespace maxscript {

namespace {

// The longer ones first.
const char16_t* const kSymbols[] = {u"==", u"!=", u"<=", u">=", u"+=", u"-=", u"*=", u"/=",
                                    u"#(", u"=",  u"<",  u">",  u"+",  u"-",  u"*",  u"/",
                                    u"(",  u")",  u"[",  u"]",  u",",  u".",  u"&",  u":"};

bool starts_word(char16_t unit) {
    return unit == u'_' || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit >= 0x80;
}

bool is_digit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

// Below 0: `unit` is no hexadecimal digit.
int hex_digit(char16_t unit) {
    const char16_t lower = lower_unit(unit);
    return is_digit(unit) ? unit - u'0' : lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

bool is_word_unit(char16_t unit) {
    return starts_word(unit) || is_digit(unit);
}

class Lexer {
public:
    Lexer(const Text& source, const Text* file_name) : source_(source), file_name_(file_name) {}
    std::vector<Token> run();

private:
    bool at_end() const { return at_ >= source_.size(); }
    // 0 after the end.
    char16_t peek(std::size_t ahead = 0) const {
        return at_ + ahead < source_.size() ? source_[at_ + ahead] : u'\0';
    }
    char16_t take();
    void take_digits(std::string& digits);
    Spot here() const;
    void add(TokenKind kind, const Spot& spot, const Text& text = Text());
    void add_number(const Spot& spot, const Value& value);

    void skip_blanks();
    bool skip_comment();
    void read_token(bool blank_before);
    void read_word(const Spot& spot);
    bool read_bare(TokenKind kind, const Spot& spot);
    void read_symbol(const Spot& spot);
    void read_number(const Spot& spot);
    void read_hex_number(const Spot& spot);
    void read_integer(const Spot& spot, const std::string& digits);
    void read_string(const Spot& spot);
    void read_escape(Text& text);

    const Text& source_;
    const Text* file_name_;
    std::size_t at_ = 0;
    int line_ = 1;
    std::size_t line_start_ = 0;
    std::vector<Token> tokens_;
};

std::vector<Token> Lexer::run() {
    while (true) {
        const std::size_t before = at_;
        skip_blanks();
        if (tokens_.empty() || tokens_.back().kind != TokenKind::error) {
            read_token(at_ != before || before == 0);
        }
        if (tokens_.back().kind == TokenKind::end || tokens_.back().kind == TokenKind::error) {
            return std::move(tokens_);
        }
    }
}

char16_t Lexer::take() {
    const char16_t unit = source_[at_++];
    if (unit == u'\n') {
        ++line_;
        line_start_ = at_;
    }
    return unit;
}

Spot Lexer::here() const {
    Spot spot;
    spot.file = file_name_;
    spot.line = line_;
    spot.column = static_cast<int>(at_ - line_start_) + 1;
    return spot;
}

void Lexer::add(TokenKind kind, const Spot& spot, const Text& text) {
    Token token;
    token.kind = kind;
    token.spot = spot;
    token.text = text;
    token.folded = folded(text);
    tokens_.push_back(std::move(token));
}

void Lexer::add_number(const Spot& spot, const Value& value) {
    add(TokenKind::number, spot);
    tokens_.back().value = value;
}

// Blanks and comments.
void Lexer::skip_blanks() {
    while (!at_end()) {
        const char16_t unit = peek();
        if (unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\f' || unit == u'\v' ||
            (unit == 0xFEFF && at_ == 0)) {
            take();
        } else if (unit == u'-' && peek(1) == u'-') {
            while (!at_end() && peek() != u'\n') {
                take();
            }
        } else if (unit == u'/' && peek(1) == u'*') {
            if (!skip_comment()) {
                return;
            }
        } else {
            return;
        }
    }
}

bool Lexer::skip_comment() {
    const Spot spot = here();
    take();
    take();
    while (!at_end()) {
        if (take() == u'*' && peek() == u'/') {
            take();
            return true;
        }
    }
    add(TokenKind::error, spot, u"unterminated comment");
    return false;
}

void Lexer::read_token(bool blank_before) {
    const std::size_t index = tokens_.size();
    const Spot spot = here();
    if (at_end()) {
        add(TokenKind::end, spot);
    } else if (peek() == u'\n') {
        take();
        add(TokenKind::newline, spot);
    } else if (peek() == u';') {
        take();
        add(TokenKind::semicolon, spot);
    } else if (is_digit(peek()) || (peek() == u'.' && is_digit(peek(1)))) {
        read_number(spot);
    } else if (peek() == u'"' || (peek() == u'@' && peek(1) == u'"')) {
        read_string(spot);
    } else if (starts_word(peek()) || peek() == u'\'') {
        read_word(spot);
    } else if (peek() == u'#' && (is_word_unit(peek(1)) || peek(1) == u'\'')) {
        take();
        read_bare(TokenKind::name, spot);
    } else {
        read_symbol(spot);
    }
    Token& token = tokens_[index];
    token.blank_before = blank_before;
    token.blank_after = at_end() || peek() == u' ' || peek() == u'\t' || peek() == u'\r' || peek() == u'\n';
}

void Lexer::read_word(const Spot& spot) {
    const bool quoted = peek() == u'\'';
    if (!read_bare(quoted ? TokenKind::quoted_word : TokenKind::word, spot)) {
        return;
    }
    if (peek() == u':' && peek(1) != u':') {
        take();
        tokens_.back().kind = TokenKind::keyword;
    }
}

// A word, with or without quotes.
bool Lexer::read_bare(TokenKind kind, const Spot& spot) {
    Text text;
    if (peek() == u'\'') {
        take();
        while (!at_end() && peek() != u'\'' && peek() != u'\n') {
            text += take();
        }
        if (peek() != u'\'') {
            add(TokenKind::error, spot, u"unterminated name in quotes");
            return false;
        }
        take();
    } else {
        while (is_word_unit(peek())) {
            text += take();
        }
    }
    add(kind, spot, text);
    return true;
}

void Lexer::read_symbol(const Spot& spot) {
    // Blanks are allowed between the two characters that open an array.
    const std::size_t next = peek() == u'#' ? source_.find_first_not_of(u" \t", at_ + 1) : Text::npos;
    if (next != Text::npos && source_[next] == u'(') {
        at_ = next + 1;
        add(TokenKind::symbol, spot, u"#(");
        return;
    }
    for (const char16_t* symbol : kSymbols) {
        const Text text(symbol);
        if (source_.compare(at_, text.size(), text) == 0) {
            at_ += text.size();
            add(TokenKind::symbol, spot, text);
            return;
        }
    }
    add(TokenKind::error, spot, u"a character that means nothing here");
}

void Lexer::take_digits(std::string& digits) {
    while (is_digit(peek())) {
        digits += static_cast<char>(take());
    }
}

void Lexer::read_number(const Spot& spot) {
    if (peek() == u'0' && lower_unit(peek(1)) == u'x' && hex_digit(peek(2)) >= 0) {
        read_hex_number(spot);
        return;
    }
    std::string digits;
    take_digits(digits);
    if (peek() == u'.') {
        digits += static_cast<char>(take());
        take_digits(digits);
        add_number(spot, Value::real(std::strtof(digits.c_str(), nullptr)));
    } else {
        read_integer(spot, digits);
    }
    if (is_word_unit(peek()) && tokens_.back().kind != TokenKind::error) {
        tokens_.pop_back();
        add(TokenKind::error, spot, u"a name cannot begin with a digit");
    }
}

void Lexer::read_integer(const Spot& spot, const std::string& digits) {
    errno = 0;
    const long long number = std::strtoll(digits.c_str(), nullptr, 10);
    // 2147483648 is allowed: a minus may stand before it.
    if (errno == ERANGE || number > 2147483648LL) {
        add(TokenKind::error, spot, u"the number does not fit into an Integer");
        return;
    }
    add_number(spot, Value::integer(static_cast<std::int32_t>(static_cast<std::uint32_t>(number))));
    if (number == 2147483648LL) {
        tokens_.back().text.assign(1, kNeedsMinus[0]);
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
        add(TokenKind::error, spot, u"the number does not fit into an Integer");
        return;
    }
    add_number(spot, Value::integer(static_cast<std::int32_t>(number)));
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
            // The line end of a text file is one character in a literal.
            if (unit != u'\r' || peek() != u'\n') {
                text += unit;
            }
        }
    }
    if (at_end()) {
        add(TokenKind::error, spot, u"unterminated string");
        return;
    }
    take();
    add(TokenKind::string, spot, text);
}

// After the backslash. A backslash that begins no escape stands for itself.
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
    // All the digits that follow: "\x41b" is one character.
    while (hex_digit(peek()) >= 0) {
        unit = (unit << 4) | static_cast<std::uint32_t>(hex_digit(take()));
    }
    text += static_cast<char16_t>(unit);
}

const char16_t* const kUnsupported[] = {
    u"about",       u"animate", u"at",   u"continue",   u"do",     u"exit",   u"in",
    u"macroscript", u"mapped",  u"max",  u"persistent", u"plugin", u"rcmenu", u"return",
    u"rollout",     u"set",     u"tool", u"utility",    u"when",
};

const char16_t* const kReserved[] = {
    u"and", u"as",   u"by",    u"case",     u"catch",      u"collect", u"coordsys", u"else",
    u"fn",  u"for",  u"from",  u"function", u"global",     u"if",      u"local",    u"not",
    u"of",  u"on",   u"off",   u"or",       u"parameters", u"struct",  u"then",     u"to",
    u"try", u"undo", u"where", u"while",    u"with",
};

template <std::size_t N>
bool is_one_of(const Token& token, const char16_t* const (&words)[N]) {
    return token.kind == TokenKind::word &&
           std::any_of(std::begin(words), std::end(words),
                       [&](const char16_t* word) { return token.folded == word; });
}

} // namespace

std::vector<Token> read_tokens(const Text& source, const Text* file_name) {
    return Lexer(source, file_name).run();
}

bool is_unsupported(const Token& token) {
    return is_one_of(token, kUnsupported);
}

bool is_reserved(const Token& token) {
    return is_unsupported(token) || is_one_of(token, kReserved);
}

bool is_name(const Token& token) {
    return token.kind == TokenKind::quoted_word || (token.kind == TokenKind::word && !is_reserved(token));
}

Text shown(const Token& token) {
    switch (token.kind) {
    case TokenKind::end:
        return u"the end of the script";
    case TokenKind::newline:
        return u"the end of the line";
    case TokenKind::semicolon:
        return u";";
    case TokenKind::keyword:
        return token.text + u":";
    case TokenKind::number:
        return u"a number";
    case TokenKind::string:
        return u"a string";
    case TokenKind::name:
        return u"#" + token.text;
    default:
        return token.text;
    }
}

} // namespace maxscript

#include "standin/maxscript/lexer.h"

namespace maxscript {

Place place_of(const Spot& spot) {
    Place place;
    if (spot.file != nullptr) {
        place.file = std::make_shared<const Text>(*spot.file);
    }
    place.line = spot.line;
    place.column = spot.column;
    return place;
}

namespace {

// The longer ones first.
const char16_t* const kSymbols[] = {u"==", u"!=", u"<=", u">=", u"+=", u"-=", u"*=", u"/=", u"#(",
                                    u"=",  u"<",  u">",  u"+",  u"-",  u"*",  u"/",  u"^",  u"(",
                                    u")",  u"[",  u"]",  u",",  u".",  u"&",  u":"};

bool starts_word(char16_t unit) {
    return unit == u'_' || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit >= 0x80;
}

} // namespace

bool is_digit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

int hex_digit(char16_t unit) {
    if (is_digit(unit)) {
        return unit - u'0';
    }
    const char16_t lower = lower_unit(unit);
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

bool is_word_unit(char16_t unit) {
    return starts_word(unit) || is_digit(unit);
}

Lexer::Lexer(const Text& source, const Text* file_name) : source_(source), file_name_(file_name) {}

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

char16_t Lexer::peek(std::size_t ahead) const {
    return at_ + ahead < source_.size() ? source_[at_ + ahead] : u'\0';
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

Token& Lexer::add(TokenKind kind, const Spot& spot) {
    Token token;
    token.kind = kind;
    token.spot = spot;
    tokens_.push_back(std::move(token));
    return tokens_.back();
}

void Lexer::add_error(const Spot& spot, const char16_t* message) {
    add(TokenKind::error, spot).text = message;
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
    add_error(spot, u"unterminated comment");
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

// A word with or without quotes.
bool Lexer::read_bare(TokenKind kind, const Spot& spot) {
    Text text;
    if (peek() == u'\'') {
        take();
        while (!at_end() && peek() != u'\'' && peek() != u'\n') {
            text += take();
        }
        if (peek() != u'\'') {
            add_error(spot, u"unterminated name in quotes");
            return false;
        }
        take();
    } else {
        while (is_word_unit(peek())) {
            text += take();
        }
    }
    Token& token = add(kind, spot);
    token.folded = folded(text);
    token.text = std::move(text);
    return true;
}

void Lexer::read_symbol(const Spot& spot) {
    // Blanks may stand between the two characters that open an array.
    const std::size_t next = peek() == u'#' ? source_.find_first_not_of(u" \t", at_ + 1) : Text::npos;
    if (next != Text::npos && source_[next] == u'(') {
        at_ = next + 1;
        add(TokenKind::symbol, spot).text = u"#(";
        return;
    }
    for (const char16_t* symbol : kSymbols) {
        const Text text(symbol);
        if (source_.compare(at_, text.size(), text) == 0) {
            at_ += text.size();
            add(TokenKind::symbol, spot).text = text;
            return;
        }
    }
    add_error(spot, u"a character that means nothing here");
}

std::vector<Token> read_tokens(const Text& source, const Text* file_name) {
    return Lexer(source, file_name).run();
}

} // namespace maxscript

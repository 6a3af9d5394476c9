#include "standin/maxscript/parser.h"

#include "standin/maxscript/parser_depth.h"

#include <algorithm>

namespace maxscript {

namespace {

const char16_t* const kReserved[] = {
    u"about",   u"and",      u"animate",  u"as",      u"at",   u"by",     u"case",        u"catch",
    u"collect", u"continue", u"coordsys", u"do",      u"else", u"exit",   u"fn",          u"for",
    u"from",    u"function", u"global",   u"if",      u"in",   u"local",  u"macroscript", u"mapped",
    u"max",     u"not",      u"of",       u"on",      u"off",  u"or",     u"parameters",  u"persistent",
    u"plugin",  u"rcmenu",   u"return",   u"rollout", u"set",  u"struct", u"then",        u"to",
    u"tool",    u"try",      u"undo",     u"utility", u"when", u"where",  u"while",       u"with",
};

} // namespace

void refuse_non_ascii(const std::string& bytes, const Text* file_name) {
    // A mark of UTF-8 at the start is no text.
    const std::size_t mark = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
    Place place;
    place.file = std::make_shared<const Text>(*file_name);
    place.line = 1;
    std::size_t line_start = mark;
    for (std::size_t i = mark; i < bytes.size(); ++i) {
        if (static_cast<unsigned char>(bytes[i]) >= 0x80) {
            place.column = static_cast<int>(i - line_start) + 1;
            throw ScriptError(ErrorKind::check, place, u"a byte that is not ASCII");
        }
        if (bytes[i] == '\n') {
            ++place.line;
            line_start = i + 1;
        }
    }
}

Parser::Parser(Globals& globals, bool strict, const Text& source, const Text* file_name)
    : scopes_(globals), strict_(strict), tokens_(read_tokens(source, file_name)) {}

std::shared_ptr<FunctionCode> Parser::next_unit() {
    skip_separators();
    if (token().kind == TokenKind::end) {
        return nullptr;
    }
    used_.clear();
    auto code = std::make_shared<FunctionCode>();
    scopes_.begin_function(true, false);
    code->body = expression();
    const FunctionScope function = scopes_.end_function();
    code->slots = function.most_slots;
    code->height = function.height + 1;
    end_statement(false);
    return code;
}

const Token& Parser::peek(std::size_t ahead) const {
    return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
}

bool Parser::is_symbol(const char16_t* symbol) const {
    return token().kind == TokenKind::symbol && token().text == symbol;
}

bool Parser::is_word(const char16_t* word) const {
    return token().kind == TokenKind::word && token().folded == word;
}

bool Parser::take_symbol(const char16_t* symbol) {
    const bool there = is_symbol(symbol);
    at_ += there ? 1 : 0;
    return there;
}

bool Parser::take_word(const char16_t* word) {
    const bool there = is_word(word);
    at_ += there ? 1 : 0;
    return there;
}

void Parser::expect_symbol(const char16_t* symbol) {
    if (!take_symbol(symbol)) {
        if (token().kind == TokenKind::error) {
            unexpected();
        }
        fail(token().spot, u"Syntax error: at " + shown(token()) + u", expected " + symbol);
    }
}

void Parser::expect_word(const char16_t* word) {
    if (!take_word(word)) {
        if (token().kind == TokenKind::error) {
            unexpected();
        }
        fail(token().spot, u"Syntax error: at " + shown(token()) + u", expected " + word);
    }
}

void Parser::skip_newlines() {
    while (token().kind == TokenKind::newline) {
        ++at_;
    }
}

void Parser::skip_separators() {
    while (token().kind == TokenKind::newline || token().kind == TokenKind::semicolon) {
        ++at_;
    }
}

void Parser::skip_before(const char16_t* symbol) {
    const std::size_t before = at_;
    skip_separators();
    if (!is_symbol(symbol) && !is_word(symbol)) {
        at_ = before;
        skip_newlines();
    }
}

void Parser::end_statement(bool in_block) {
    const TokenKind kind = token().kind;
    if (kind == TokenKind::newline || kind == TokenKind::semicolon || (in_block && is_symbol(u")")) ||
        (!in_block && kind == TokenKind::end)) {
        return;
    }
    unexpected();
}

bool Parser::is_reserved(const Token& candidate) const {
    return candidate.kind == TokenKind::word &&
           std::any_of(std::begin(kReserved), std::end(kReserved),
                       [&](const char16_t* word) { return candidate.folded == word; });
}

Token Parser::take_name(const char16_t* what) {
    const bool is_name = token().kind == TokenKind::word || token().kind == TokenKind::quoted_word;
    if (!is_name || is_reserved(token())) {
        if (token().kind == TokenKind::error) {
            unexpected();
        }
        fail(token().spot, u"Syntax error: at " + shown(token()) + u", expected " + what);
    }
    return tokens_[at_++];
}

void Parser::fail(const Spot& spot, const Text& message) const {
    throw ScriptError(ErrorKind::syntax, place_of(spot), message);
}

void Parser::unexpected() const {
    if (token().kind == TokenKind::error) {
        fail(token().spot, u"Syntax error: " + token().text);
    }
    fail(token().spot, u"Syntax error: unexpected " + shown(token()));
}

// Refusals that the host would not make: only in strict reading.
void Parser::refuse(const Spot& spot, const Text& message) const {
    if (!strict_) {
        return;
    }
    ScriptError error(ErrorKind::check, place_of(spot), message);
    if (refusals_ == nullptr) {
        throw error;
    }
    refusals_->push_back(std::move(error));
}

Text Parser::shown(const Token& candidate) const {
    switch (candidate.kind) {
    case TokenKind::end:
        return u"the end of the script";
    case TokenKind::newline:
        return u"the end of the line";
    case TokenKind::semicolon:
        return u";";
    case TokenKind::keyword:
        return candidate.text + u":";
    case TokenKind::number:
        return u"a number";
    case TokenKind::string:
        return u"a string";
    case TokenKind::name:
        return u"#" + candidate.text;
    default:
        return candidate.text;
    }
}

Parser::Depth::Depth(Parser& parser) : parser_(parser) {
    if (++parser_.depth_ > kDeepest) {
        --parser_.depth_;
        parser_.fail(parser_.token().spot, u"Syntax error: expressions stand too deep inside each other");
    }
    FunctionScope& function = parser_.scopes_.function();
    function.height = std::max(function.height, parser_.depth_);
}

Parser::Depth::~Depth() {
    --parser_.depth_;
}

} // namespace maxscript

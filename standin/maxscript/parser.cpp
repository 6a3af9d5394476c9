#include "standin/maxscript/parser.h"

namespace maxscript {

namespace {

// Each level takes a dozen frames of the machine's stack.
constexpr int kDeepest = 120;

} // namespace

void refuse_non_ascii(const std::string& bytes, const Text* file_name) {
    // The byte order mark of UTF-8 is not part of the text.
    const std::size_t mark = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
    Spot spot;
    spot.file = file_name;
    spot.line = 1;
    std::size_t line_start = mark;
    for (std::size_t i = mark; i < bytes.size(); ++i) {
        if (static_cast<unsigned char>(bytes[i]) >= 0x80) {
            spot.column = static_cast<int>(i - line_start) + 1;
            throw ScriptError(ErrorKind::check, spot, u"a byte that is not ASCII");
        }
        if (bytes[i] == '\n') {
            ++spot.line;
            line_start = i + 1;
        }
    }
}

Parser::Parser(Globals& globals, const Text& source, const Text* file_name)
    : scopes_(globals), tokens_(read_tokens(source, file_name)) {}

std::shared_ptr<FunctionCode> Parser::next_unit() {
    skip_separators();
    if (token().kind == TokenKind::end) {
        return nullptr;
    }
    used_.clear();
    auto code = std::make_shared<FunctionCode>();
    scopes_.begin_function(true, false);
    body(*code);
    end_statement(false);
    return code;
}

bool Parser::is_this(const Token& candidate, const char16_t* text) {
    return (candidate.kind == TokenKind::symbol || candidate.kind == TokenKind::word) &&
           candidate.folded == text;
}

bool Parser::take(const char16_t* text) {
    const bool there = is(text);
    at_ += there ? 1 : 0;
    return there;
}

void Parser::expect(const char16_t* text) {
    if (!take(text)) {
        fail_expected(text);
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

void Parser::skip_before(const char16_t* text) {
    const std::size_t before = at_;
    skip_separators();
    if (!is(text)) {
        at_ = before;
        skip_newlines();
    }
}

void Parser::end_statement(bool in_block) {
    const TokenKind kind = token().kind;
    if (kind == TokenKind::newline || kind == TokenKind::semicolon || (in_block && is(u")")) ||
        (!in_block && kind == TokenKind::end)) {
        return;
    }
    unexpected();
}

Token Parser::take_name(const char16_t* what) {
    if (!is_name(token())) {
        fail_expected(what);
    }
    return tokens_[at_++];
}

void Parser::fail(const Spot& spot, const Text& message) const {
    throw ScriptError(ErrorKind::syntax, spot, message);
}

void Parser::fail_expected(const char16_t* what) const {
    if (token().kind == TokenKind::error) {
        unexpected();
    }
    fail(token().spot, u"Syntax error: at " + shown(token()) + u", expected " + what);
}

void Parser::unexpected() const {
    const bool is_error = token().kind == TokenKind::error;
    fail(token().spot, u"Syntax error: " + (is_error ? token().text : u"unexpected " + shown(token())));
}

void Parser::refuse(const Spot& spot, const Text& message) const {
    const ScriptError error(ErrorKind::check, spot, message);
    if (refusals_ == nullptr) {
        throw error;
    }
    refusals_->push_back(error);
}

Parser::Depth::Depth(Parser& parser) : parser_(parser) {
    if (++parser_.depth_ > kDeepest) {
        --parser_.depth_;
        parser_.fail(parser_.token().spot, u"Syntax error: expressions stand too deep inside each other");
    }
    FunctionScope& function = parser_.scopes_.function();
    function.height = std::max(function.height, parser_.depth_);
}

// Checks: mistakes that show before a script runs.

const Variable* Parser::variable_of(const Node& node) const {
    const auto found = used_.find(&node);
    return found == used_.end() ? nullptr : &found->second;
}

Text wrong_count(const Text& function, std::size_t wanted, std::size_t given) {
    return u"Argument count error: " + function + u" wanted " + text_from_number(static_cast<int>(wanted)) +
           u", got " + text_from_number(static_cast<int>(given));
}

void Parser::check_call(const CallNode& node) {
    if (const auto* cell = dynamic_cast<const CellNode*>(node.callee.get())) {
        if (cell->cell->from_host && equal_folded(cell->cell->name, u"format")) {
            check_format(node);
        }
    }
    const auto* property = dynamic_cast<const PropertyNode*>(node.callee.get());
    for (const CallNode::Keyword& keyword : node.keywords) {
        if (property != nullptr && property->name == u"show" && keyword.name == u"asarray") {
            refuse(node.spot(), u"asArray: is newer than the host");
        }
    }
    check_count(node);
}

// A % in data would be a placeholder, so only literals are accepted.
void Parser::check_format(const CallNode& node) {
    if (node.arguments.empty() || node.arguments[0]->literal_text() != nullptr) {
        return;
    }
    const Variable* variable = variable_of(*node.arguments[0]);
    if (variable == nullptr || !variable->knowledge->holds_literal) {
        refuse(node.arguments[0]->spot(), u"data inside a format string; write format \"%\" value");
        return;
    }
    variable->knowledge->is_format = true;
}

void Parser::check_count(const CallNode& node) {
    const auto* member = dynamic_cast<const MemberNode*>(node.callee.get());
    if (member != nullptr && member->member().is_function) {
        // The function may be defined after its use: checked when the struct is complete.
        member_calls_.push_back(
            MemberCall{member->layout, member->index, node.arguments.size(), node.spot()});
        return;
    }
    const Variable* variable = variable_of(*node.callee);
    if (variable == nullptr || variable->knowledge->arguments < 0) {
        return;
    }
    const auto wanted = static_cast<std::size_t>(variable->knowledge->arguments);
    if (wanted != node.arguments.size()) {
        refuse(node.spot(), wrong_count(variable->name, wanted, node.arguments.size()));
    }
}

void Parser::check_member_counts(const StructLayout& layout) {
    for (const MemberCall& call : member_calls_) {
        if (call.layout != &layout || !layout.members[call.index].code) {
            continue;
        }
        const StructMember& member = layout.members[call.index];
        if (member.code->parameters != call.count) {
            refuse(call.spot, wrong_count(member.name, member.code->parameters, call.count));
        }
    }
}

// A variable gets a value: discards what was known of the former value.
void Parser::forget(const Spot& spot, const Variable& variable, const Node* value) {
    Knowledge& knowledge = *variable.knowledge;
    const bool is_literal = value != nullptr && value->literal_text() != nullptr;
    if (!is_literal && knowledge.is_format) {
        refuse(spot, u"data inside a format string: " + variable.name + u" is used as one");
    }
    knowledge.held_other = knowledge.held_other || !is_literal;
    knowledge.holds_literal = !knowledge.held_other;
    knowledge.arguments = -1;
}

void Parser::check_assignable(const Spot& spot, const Variable& variable) {
    const bool is_constant = variable.kind == Variable::Kind::cell && variable.cell->is_read_only();
    const bool is_function =
        variable.kind == Variable::Kind::member && variable.layout->members[variable.slot].is_function;
    if (is_constant || is_function) {
        fail(spot, u"Compile error: Cannot assign to read-only variable: " + variable.name);
    }
}

} // namespace maxscript

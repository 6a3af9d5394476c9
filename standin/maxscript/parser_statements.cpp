// Branches, loops, try, contexts.
#include "standin/maxscript/engine.h"
#include "standin/maxscript/parser.h"
#include "standin/maxscript/parser_depth.h"

#include <algorithm>

namespace maxscript {

namespace {

const char16_t* const kStatements[] = {
    u"local", u"global",      u"persistent", u"if",      u"while",  u"do",     u"for",     u"case",
    u"try",   u"fn",          u"function",   u"mapped",  u"struct", u"return", u"exit",    u"continue",
    u"with",  u"macroscript", u"rollout",    u"utility", u"plugin", u"rcmenu", u"tool",    u"max",
    u"set",   u"about",       u"at",         u"in",      u"when",   u"undo",   u"animate",
};

} // namespace

bool Parser::starts_statement() const {
    if (token().kind != TokenKind::word) {
        return false;
    }
    return starts_context() || std::any_of(std::begin(kStatements), std::end(kStatements),
                                           [&](const char16_t* word) { return token().folded == word; });
}

// `undo off (…)` without `with`.
bool Parser::starts_context() const {
    if (!is_word(u"undo")) {
        return false;
    }
    const Token& next = peek();
    const Token& state = next.kind == TokenKind::string ? peek(2) : next;
    return state.kind == TokenKind::word && (state.folded == u"on" || state.folded == u"off" ||
                                             state.folded == u"true" || state.folded == u"false");
}

NodePointer Parser::statement() {
    const Text word = token().folded;
    if (word == u"local" || word == u"global" || word == u"persistent") {
        return declaration();
    }
    if (word == u"fn" || word == u"function") {
        return function_definition();
    }
    if (word == u"struct") {
        return struct_definition();
    }
    if (word == u"if") {
        return if_statement();
    }
    if (word == u"while") {
        return while_loop();
    }
    if (word == u"for") {
        return for_loop();
    }
    if (word == u"case") {
        return case_statement();
    }
    if (word == u"try") {
        return try_statement();
    }
    if (word == u"with" || starts_context()) {
        return undo_context();
    }
    fail(token().spot, u"Syntax error: " + token().text + u" is not supported");
}

NodePointer Parser::if_statement() {
    auto node = std::make_unique<IfNode>(token().spot);
    while (true) {
        ++at_;
        skip_newlines();
        IfNode::Branch branch;
        branch.condition = expression();
        skip_newlines();
        const bool may_have_else = is_word(u"then");
        if (!take_word(u"do")) {
            expect_word(u"then");
        }
        skip_newlines();
        branch.body = expression();
        node->branches.push_back(std::move(branch));
        const std::size_t before = at_;
        skip_before(u"else");
        if (!may_have_else || !take_word(u"else")) {
            at_ = before;
            return node;
        }
        skip_newlines();
        if (!is_word(u"if")) {
            node->otherwise = expression();
            return node;
        }
    }
}

NodePointer Parser::while_loop() {
    auto node = std::make_unique<WhileNode>(token().spot);
    ++at_;
    skip_newlines();
    node->condition = expression();
    skip_newlines();
    expect_word(u"do");
    skip_newlines();
    node->body = expression();
    return node;
}

NodePointer Parser::for_loop() {
    auto node = std::make_unique<ForNode>(token().spot);
    ++at_;
    const Token name = take_name(u"the name of the loop's variable");
    if (is_symbol(u",")) {
        refuse(token().spot, u"a loop with several variables is newer than the host");
        unexpected();
    }
    if (!take_symbol(u"=")) {
        expect_word(u"in");
    }
    skip_newlines();
    for_source(*node);
    scopes_.begin_block();
    const Variable variable = scopes_.declare_local(name.text, name.folded);
    node->variable = variable_node(name.spot, variable);
    node->during = for_clause(u"while");
    node->where = for_clause(u"where");
    skip_newlines();
    node->collects = is_word(u"collect");
    if (!take_word(u"collect")) {
        expect_word(u"do");
    }
    skip_newlines();
    node->body = expression();
    scopes_.end_block();
    return node;
}

void Parser::for_source(ForNode& node) {
    node.source = expression();
    skip_newlines();
    if (!take_word(u"to")) {
        return;
    }
    skip_newlines();
    node.to = expression();
    node.by = for_clause(u"by");
}

NodePointer Parser::for_clause(const char16_t* word) {
    skip_newlines();
    if (!take_word(word)) {
        return nullptr;
    }
    skip_newlines();
    return expression();
}

NodePointer Parser::case_statement() {
    auto node = std::make_unique<CaseNode>(token().spot);
    ++at_;
    if (!is_word(u"of")) {
        node->subject = expression();
    }
    skip_newlines();
    expect_word(u"of");
    skip_newlines();
    const Spot spot = token().spot;
    expect_symbol(u"(");
    skip_separators();
    while (!take_symbol(u")")) {
        if (token().kind == TokenKind::end) {
            fail(spot, u"Syntax error: ( without its )");
        }
        case_branch(*node);
        end_statement(true);
        skip_separators();
    }
    return node;
}

void Parser::case_branch(CaseNode& node) {
    CaseNode::Branch branch;
    if (token().kind == TokenKind::keyword) {
        Token name = tokens_[at_++];
        if (name.folded != u"default") {
            const Variable variable = known_variable(name);
            branch.label = variable_node(name.spot, variable);
        }
    } else {
        branch.label = operand();
        expect_symbol(u":");
    }
    skip_newlines();
    branch.body = expression();
    node.branches.push_back(std::move(branch));
}

NodePointer Parser::try_statement() {
    auto node = std::make_unique<TryNode>(token().spot);
    ++at_;
    skip_newlines();
    node->body = expression();
    skip_before(u"catch");
    expect_word(u"catch");
    skip_newlines();
    node->handler = expression();
    return node;
}

NodePointer Parser::undo_context() {
    const Depth depth(*this);
    auto node = std::make_unique<ContextNode>(token().spot);
    take_word(u"with");
    expect_word(u"undo");
    if (token().kind == TokenKind::string) {
        ++at_;
    }
    node->state = operand();
    skip_newlines();
    node->body = expression();
    return node;
}

} // namespace maxscript

// Statements: branches, loops, try, contexts.
#include "standin/maxscript/parser.h"

namespace maxscript {

NodePointer Parser::statement() {
    static const std::pair<const char16_t*, Reader> kStatements[] = {
        {u"local", &Parser::declaration},        {u"global", &Parser::declaration},
        {u"fn", &Parser::function_definition},   {u"function", &Parser::function_definition},
        {u"struct", &Parser::struct_definition}, {u"if", &Parser::if_statement},
        {u"while", &Parser::while_loop},         {u"for", &Parser::for_loop},
        {u"case", &Parser::case_statement},      {u"try", &Parser::try_statement},
        {u"undo", &Parser::undo_context},        {u"with", &Parser::undo_context},
    };
    for (const auto& entry : kStatements) {
        if (is(entry.first)) {
            return (this->*entry.second)();
        }
    }
    if (is_unsupported(token())) {
        fail(token().spot, u"Syntax error: " + token().text + u" is not supported");
    }
    return simple_expression();
}

NodePointer Parser::if_statement() {
    auto node = std::make_unique<IfNode>(token().spot);
    while (true) {
        ++at_;
        skip_newlines();
        IfNode::Branch branch;
        branch.condition = expression();
        skip_newlines();
        const bool may_have_else = is(u"then");
        if (!take(u"do")) {
            expect(u"then");
        }
        skip_newlines();
        branch.body = expression();
        node->branches.push_back(std::move(branch));
        const std::size_t before = at_;
        skip_before(u"else");
        if (!may_have_else || !take(u"else")) {
            at_ = before;
            return node;
        }
        skip_newlines();
        if (!is(u"if")) {
            node->else_body = expression();
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
    expect(u"do");
    skip_newlines();
    node->body = expression();
    return node;
}

NodePointer Parser::for_loop() {
    auto node = std::make_unique<ForNode>(token().spot);
    ++at_;
    const Token name = take_name(u"the name of the loop's variable");
    if (is(u",")) {
        refuse(token().spot, u"a loop with several variables is newer than the host");
        unexpected();
    }
    if (!take(u"=")) {
        expect(u"in");
    }
    skip_newlines();
    for_source(*node);
    scopes_.begin_block();
    node->variable = variable_node(name.spot, scopes_.declare_local(name.text, name.folded));
    node->during = for_clause(u"while");
    node->where = for_clause(u"where");
    skip_newlines();
    node->collects = is(u"collect");
    if (!take(u"collect")) {
        expect(u"do");
    }
    skip_newlines();
    node->body = expression();
    scopes_.end_block();
    return node;
}

void Parser::for_source(ForNode& node) {
    node.source = expression();
    skip_newlines();
    if (!take(u"to")) {
        return;
    }
    skip_newlines();
    node.to = expression();
    node.by = for_clause(u"by");
}

NodePointer Parser::for_clause(const char16_t* word) {
    skip_newlines();
    if (!take(word)) {
        return nullptr;
    }
    skip_newlines();
    return expression();
}

NodePointer Parser::case_statement() {
    auto node = std::make_unique<CaseNode>(token().spot);
    ++at_;
    if (!is(u"of")) {
        node->subject = expression();
    }
    skip_newlines();
    expect(u"of");
    skip_newlines();
    const Spot spot = token().spot;
    expect(u"(");
    skip_separators();
    while (!take(u")")) {
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
        const Token name = tokens_[at_++];
        if (name.folded != u"default") {
            branch.label = variable_node(name.spot, known_variable(name));
        }
    } else {
        branch.label = operand();
        expect(u":");
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
    expect(u"catch");
    skip_newlines();
    node->handler = expression();
    return node;
}

NodePointer Parser::undo_context() {
    const Depth depth(*this);
    auto node = std::make_unique<ContextNode>(token().spot);
    take(u"with");
    expect(u"undo");
    if (token().kind == TokenKind::string) {
        ++at_;
    }
    node->state = operand();
    skip_newlines();
    node->body = expression();
    return node;
}

} // namespace maxscript

// Operands and calls. An operand with its properties and indices binds closer than a call, a call closer than
// any operator.
#include "standin/maxscript/parser.h"

namespace maxscript {

namespace {

constexpr int kLongestPath = 50; // a.b[1].c …

} // namespace

NodePointer Parser::call() {
    const Spot spot = token().spot;
    // `-sin x` negates the result of the call: a function cannot be negated.
    if (is(u"-") && peek().kind != TokenKind::number) {
        const Depth depth(*this);
        ++at_;
        return std::make_unique<UnaryNode>(spot, true, call());
    }
    const bool is_literal = token().kind == TokenKind::number || token().kind == TokenKind::string ||
                            token().kind == TokenKind::name || is(u"-") || is(u"#(");
    NodePointer first = operand();
    if (!is_literal) {
        return finish_call(std::move(first));
    }
    if (starts_argument()) {
        unexpected();
    }
    return first;
}

NodePointer Parser::finish_call(NodePointer callee) {
    auto node = std::make_unique<CallNode>(callee->spot());
    if (is_empty_call()) {
        at_ += 2;
        if (starts_argument() || ((is(u".") || is(u"[")) && !token().blank_before)) {
            fail(token().spot,
                 u"Syntax error: unexpected " + shown(token()) + u" behind (); put the call in brackets");
        }
    } else if (starts_argument()) {
        while (starts_argument()) {
            call_argument(*node);
        }
    } else {
        return callee;
    }
    node->callee = std::move(callee);
    check_call(*node);
    return node;
}

void Parser::call_argument(CallNode& node) {
    if (token().kind != TokenKind::keyword) {
        if (is_empty_call()) {
            fail(token().spot,
                 u"Syntax error: unexpected () among arguments; put the inner call in brackets");
        }
        node.arguments.push_back(operand());
        return;
    }
    CallNode::Keyword keyword;
    keyword.name = token().folded;
    ++at_;
    if (!starts_argument() && !is(u"-")) {
        unexpected();
    }
    keyword.value = operand();
    node.keywords.push_back(std::move(keyword));
}

// On the same line. A minus begins an argument when there is a blank before it and none after it.
bool Parser::starts_argument() const {
    switch (token().kind) {
    case TokenKind::word:
        return !is_reserved(token()) || is(u"on") || is(u"off");
    case TokenKind::quoted_word:
    case TokenKind::keyword:
    case TokenKind::number:
    case TokenKind::string:
    case TokenKind::name:
    case TokenKind::error:
        return true;
    case TokenKind::symbol:
        if (token().text == u"-") {
            return token().blank_before && !token().blank_after;
        }
        return token().text == u"(" || token().text == u"#(" || token().text == u"[" || token().text == u"&";
    default:
        return false;
    }
}

NodePointer Parser::operand() {
    if (is(u"-")) {
        return negated();
    }
    return postfix(factor());
}

NodePointer Parser::negated() {
    const Depth depth(*this);
    const Spot spot = token().spot;
    ++at_;
    if (token().kind == TokenKind::number && token().text == kNeedsMinus) {
        return postfix(std::make_unique<LiteralNode>(spot, tokens_[at_++].value));
    }
    return std::make_unique<UnaryNode>(spot, true, operand());
}

NodePointer Parser::postfix(NodePointer object) {
    for (int count = 0;; ++count) {
        const Spot spot = token().spot;
        if (count > kLongestPath) {
            fail(spot, u"Syntax error: too many properties and indices after each other");
        }
        if (take(u".")) {
            if (token().kind != TokenKind::word && token().kind != TokenKind::quoted_word) {
                unexpected();
            }
            object = std::make_unique<PropertyNode>(spot, std::move(object), token().folded);
            ++at_;
        } else if (is(u"[") && !token().blank_before) {
            ++at_;
            skip_newlines();
            NodePointer index = expression();
            skip_newlines();
            expect(u"]");
            object = std::make_unique<IndexNode>(spot, std::move(object), std::move(index));
        } else {
            return object;
        }
    }
}

NodePointer Parser::factor() {
    const Spot spot = token().spot;
    switch (token().kind) {
    case TokenKind::number:
        if (token().text == kNeedsMinus) {
            fail(spot, u"Syntax error: the number does not fit into an Integer");
        }
        return std::make_unique<LiteralNode>(spot, tokens_[at_++].value);
    case TokenKind::string:
        return std::make_unique<StringNode>(spot, Value::string(tokens_[at_++].text));
    case TokenKind::name:
        return std::make_unique<LiteralNode>(spot, Value::name(tokens_[at_++].text));
    case TokenKind::quoted_word:
        return name_use();
    case TokenKind::word:
        if (is(u"on") || is(u"off")) {
            return std::make_unique<LiteralNode>(spot, Value::boolean(take(u"on") || !take(u"off")));
        }
        if (is_reserved(token())) {
            unexpected();
        }
        return name_use();
    case TokenKind::symbol:
        return symbol_factor();
    default:
        unexpected();
    }
}

NodePointer Parser::symbol_factor() {
    if (is(u"(")) {
        return block();
    }
    if (is(u"#(")) {
        return array();
    }
    if (is(u"&")) {
        return reference();
    }
    if (is(u"[")) {
        fail(token().spot, u"Syntax error: points are not supported, and an index follows without a blank");
    }
    unexpected();
}

NodePointer Parser::name_use() {
    const Token name = tokens_[at_++];
    const Variable variable = known_variable(name);
    if (variable.cell && variable.cell->constant && !variable.cell->value.is_callable()) {
        return std::make_unique<LiteralNode>(name.spot, variable.cell->value);
    }
    NodePointer node = variable_node(name.spot, variable);
    used_[node.get()] = variable;
    return node;
}

Variable Parser::known_variable(const Token& name) {
    Variable variable;
    switch (scopes_.find(name.folded, variable)) {
    case Scopes::Answer::found:
        break;
    case Scopes::Answer::outer_local:
        fail(name.spot, u"Compile error: No outer local variable references permitted here: " + name.text);
    case Scopes::Answer::unknown:
        refuse(name.spot, name.folded == u"executescriptfile" ? u"executeScriptFile is newer than the host"
                                                              : u"undeclared name: " + name.text);
        variable = scopes_.declare(name.text, name.folded);
        break;
    }
    return variable;
}

NodePointer Parser::variable_node(const Spot& spot, const Variable& variable) const {
    switch (variable.kind) {
    case Variable::Kind::slot:
        return std::make_unique<SlotNode>(spot, variable.slot);
    case Variable::Kind::member:
        return std::make_unique<MemberNode>(spot, variable.layout.get(), variable.slot);
    default:
        return std::make_unique<CellNode>(spot, variable.cell);
    }
}

NodePointer Parser::block() {
    auto node = std::make_unique<BlockNode>(token().spot);
    ++at_;
    scopes_.begin_block();
    skip_separators();
    while (!is(u")")) {
        if (token().kind == TokenKind::end) {
            fail(node->spot(), u"Syntax error: ( without its )");
        }
        node->statements.push_back(expression());
        end_statement(true);
        skip_separators();
    }
    ++at_;
    scopes_.end_block();
    return node;
}

NodePointer Parser::array() {
    auto node = std::make_unique<ArrayNode>(token().spot);
    ++at_;
    skip_newlines();
    while (!take(u")")) {
        if (!node->items.empty()) {
            expect(u",");
            skip_newlines();
        }
        node->items.push_back(expression());
        skip_before(u",");
    }
    return node;
}

NodePointer Parser::reference() {
    const Spot spot = token().spot;
    ++at_;
    // The function gives the variable its value, so it need not be declared before.
    const Token name = token();
    Variable variable;
    if (is_name(name) && scopes_.find(name.folded, variable) == Scopes::Answer::unknown) {
        scopes_.declare(name.text, name.folded);
    }
    NodePointer target = operand();
    const Variable* known = variable_of(*target);
    if (known == nullptr || known->kind == Variable::Kind::member) {
        fail(spot, u"Syntax error: & needs a variable");
    }
    check_assignable(target->spot(), *known);
    forget(target->spot(), *known, nullptr);
    return std::make_unique<ReferNode>(spot, std::move(target));
}

} // namespace maxscript

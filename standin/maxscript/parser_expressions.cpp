// Assignments and operators by rank: or, and, not, comparison, + -, * /, ^ (to the right), as.
#include "standin/maxscript/parser.h"
#include "standin/maxscript/parser_depth.h"

namespace maxscript {

namespace {

const char16_t* const kAssignments[] = {u"=", u"+=", u"-=", u"*=", u"/="};
const char16_t* const kComparisons[] = {u"==", u"!=", u"<=", u">=", u"<", u">"};

template <std::size_t N>
bool is_one_of(const Token& token, const char16_t* const (&symbols)[N]) {
    if (token.kind != TokenKind::symbol) {
        return false;
    }
    for (const char16_t* symbol : symbols) {
        if (token.text == symbol) {
            return true;
        }
    }
    return false;
}

} // namespace

NodePointer Parser::expression() {
    const Depth depth(*this);
    return plain_expression();
}

NodePointer Parser::plain_expression() {
    if (token().kind == TokenKind::error) {
        unexpected();
    }
    if (starts_statement()) {
        return statement();
    }
    return simple_expression();
}

NodePointer Parser::simple_expression() {
    const bool is_name = token().kind == TokenKind::word || token().kind == TokenKind::quoted_word;
    if (is_name && !is_reserved(token()) && peek().kind == TokenKind::symbol && peek().text == u"=") {
        return assign_name();
    }
    NodePointer node = logic_or();
    if (is_one_of(token(), kAssignments)) {
        return assignment(std::move(node));
    }
    return node;
}

// `name = expression` declares the name when it is new.
NodePointer Parser::assign_name() {
    const Token name = tokens_[at_++];
    Variable variable;
    const Scopes::Answer answer = scopes_.find(name.folded, variable);
    if (answer == Scopes::Answer::outer_local) {
        fail(name.spot, u"Compile error: No outer local variable references permitted here: " + name.text);
    }
    if (answer == Scopes::Answer::unknown) {
        variable = scopes_.declare(name.text, name.folded);
    }
    check_assignable(name.spot, variable);
    NodePointer target = variable_node(name.spot, variable);
    used_[target.get()] = variable;
    return assignment(std::move(target));
}

NodePointer Parser::assignment(NodePointer target) {
    if (!target->is_assignable()) {
        unexpected();
    }
    auto node = std::make_unique<AssignNode>(token().spot);
    node->operation = token().text;
    ++at_;
    skip_newlines();
    node->value = expression();
    const Variable* variable = variable_of(*target);
    if (variable != nullptr) {
        check_assignable(target->spot(), *variable);
        forget(target->spot(), *variable, node->operation == u"=" ? node->value.get() : nullptr);
    }
    node->target = std::move(target);
    return node;
}

NodePointer Parser::logic_or() {
    NodePointer first = logic_and();
    if (!is_word(u"or")) {
        return first;
    }
    auto node = std::make_unique<LogicNode>(token().spot);
    node->is_and = false;
    node->operands.push_back(std::move(first));
    while (take_word(u"or")) {
        skip_newlines();
        node->operands.push_back(logic_and());
    }
    return node;
}

NodePointer Parser::logic_and() {
    NodePointer first = logic_not();
    if (!is_word(u"and")) {
        return first;
    }
    auto node = std::make_unique<LogicNode>(token().spot);
    node->operands.push_back(std::move(first));
    while (take_word(u"and")) {
        skip_newlines();
        node->operands.push_back(logic_not());
    }
    return node;
}

NodePointer Parser::logic_not() {
    const Spot spot = token().spot;
    if (!take_word(u"not")) {
        return comparison();
    }
    const Depth depth(*this);
    skip_newlines();
    return std::make_unique<NotNode>(spot, logic_not());
}

NodePointer Parser::comparison() {
    NodePointer first = sum();
    if (!is_one_of(token(), kComparisons)) {
        return first;
    }
    auto node = std::make_unique<CompareNode>(token().spot);
    node->operation = token().text;
    ++at_;
    skip_newlines();
    node->one = std::move(first);
    node->other = sum();
    // There is no a < b < c.
    if (is_one_of(token(), kComparisons)) {
        unexpected();
    }
    return node;
}

NodePointer Parser::sum() {
    NodePointer first = product();
    if (!is_symbol(u"+") && !is_symbol(u"-")) {
        return first;
    }
    auto node = std::make_unique<ChainNode>(token().spot);
    node->first = std::move(first);
    while (is_symbol(u"+") || is_symbol(u"-")) {
        const Token operation = tokens_[at_++];
        skip_newlines();
        node->links.push_back(ChainNode::Link{operation.text[0], operation.spot, product()});
    }
    return node;
}

NodePointer Parser::product() {
    NodePointer first = power();
    if (!is_symbol(u"*") && !is_symbol(u"/")) {
        return first;
    }
    auto node = std::make_unique<ChainNode>(token().spot);
    node->first = std::move(first);
    while (is_symbol(u"*") || is_symbol(u"/")) {
        const Token operation = tokens_[at_++];
        skip_newlines();
        node->links.push_back(ChainNode::Link{operation.text[0], operation.spot, power()});
    }
    return node;
}

NodePointer Parser::power() {
    NodePointer base = conversion();
    if (!is_symbol(u"^")) {
        return base;
    }
    const Depth depth(*this);
    auto node = std::make_unique<ChainNode>(token().spot);
    const Spot spot = token().spot;
    ++at_;
    skip_newlines();
    node->first = std::move(base);
    node->links.push_back(ChainNode::Link{u'^', spot, power()});
    return node;
}

NodePointer Parser::conversion() {
    NodePointer node = call();
    for (int count = 0; is_word(u"as"); ++count) {
        const Spot spot = token().spot;
        if (count == 20) {
            fail(spot, u"Syntax error: too many conversions after each other");
        }
        ++at_;
        node = std::make_unique<AsNode>(spot, std::move(node), operand());
    }
    return node;
}

} // namespace maxscript

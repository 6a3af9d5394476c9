// Assignments and operators by rank: or, and, not, comparison, + -, * /, as.
#include "standin/maxscript/parser.h"

namespace maxscript {

namespace {

constexpr int kMostConversions = 20;

const char16_t* const kAssignments[] = {u"=", u"+=", u"-=", u"*=", u"/="};
const char16_t* const kComparisons[] = {u"==", u"!=", u"<=", u">=", u"<", u">"};

template <std::size_t N>
bool is_one_of(const Token& token, const char16_t* const (&symbols)[N]) {
    return token.kind == TokenKind::symbol &&
           std::any_of(std::begin(symbols), std::end(symbols),
                       [&](const char16_t* symbol) { return token.text == symbol; });
}

} // namespace

NodePointer Parser::expression() {
    const Depth depth(*this);
    if (token().kind == TokenKind::error) {
        unexpected();
    }
    return statement();
}

NodePointer Parser::simple_expression() {
    if (is_name(token()) && is_this(peek(), u"=")) {
        return assign_name();
    }
    NodePointer node = logic_or();
    return is_one_of(token(), kAssignments) ? assignment(std::move(node)) : std::move(node);
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

NodePointer Parser::logic(const char16_t* word, Reader read_operand) {
    NodePointer first = (this->*read_operand)();
    if (!is(word)) {
        return first;
    }
    auto node = std::make_unique<LogicNode>(token().spot);
    node->is_and = is(u"and");
    node->operands.push_back(std::move(first));
    while (take(word)) {
        skip_newlines();
        node->operands.push_back((this->*read_operand)());
    }
    return node;
}

NodePointer Parser::logic_not() {
    const Spot spot = token().spot;
    if (!take(u"not")) {
        return comparison();
    }
    const Depth depth(*this);
    skip_newlines();
    return std::make_unique<UnaryNode>(spot, false, logic_not());
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

NodePointer Parser::chain(const char16_t* one, const char16_t* other, Reader read_operand) {
    NodePointer first = (this->*read_operand)();
    if (!is(one) && !is(other)) {
        return first;
    }
    auto node = std::make_unique<ChainNode>(token().spot);
    node->first = std::move(first);
    while (is(one) || is(other)) {
        const Token operation = tokens_[at_++];
        skip_newlines();
        node->links.push_back(ChainNode::Link{operation.text[0], operation.spot, (this->*read_operand)()});
    }
    return node;
}

NodePointer Parser::conversion() {
    NodePointer node = call();
    for (int count = 0; is(u"as"); ++count) {
        const Spot spot = token().spot;
        if (count == kMostConversions) {
            fail(spot, u"Syntax error: too many conversions after each other");
        }
        ++at_;
        node = std::make_unique<AsNode>(spot, std::move(node), operand());
    }
    return node;
}

} // namespace maxscript

// What shows before a script runs: wrong counts of arguments, data in format strings, features newer than the
// host.
#include "standin/maxscript/parser.h"

#include <algorithm>

namespace maxscript {

const Variable* Parser::variable_of(const Node& node) const {
    const auto found = used_.find(&node);
    return found == used_.end() ? nullptr : &found->second;
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

// A % in data would be a placeholder, so what is not known to be a literal is refused.
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
        // It may stand behind its use; looked at when the struct is complete.
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
        refuse(node.spot(), u"Argument count error: " + variable->name + u" wanted " +
                                text_from_number(static_cast<int>(wanted)) + u", got " +
                                text_from_number(static_cast<int>(node.arguments.size())));
    }
}

void Parser::check_member_counts(const StructLayout& layout) {
    for (const MemberCall& call : member_calls_) {
        if (call.layout != &layout || !layout.members[call.index].code) {
            continue;
        }
        const StructMember& member = layout.members[call.index];
        const std::size_t wanted = member.code->parameters;
        if (wanted != call.count) {
            refuse(call.spot, u"Argument count error: " + member.name + u" wanted " +
                                  text_from_number(static_cast<int>(wanted)) + u", got " +
                                  text_from_number(static_cast<int>(call.count)));
        }
    }
}

// A variable gets a value. What was known of the former is known no longer.
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
    const bool is_constant = variable.kind == Variable::Kind::cell &&
                             (variable.cell->constant || (variable.cell->getter && !variable.cell->setter));
    const bool is_function =
        variable.kind == Variable::Kind::member && variable.layout->members[variable.slot].is_function;
    if (is_constant || is_function) {
        fail(spot, u"Compile error: Cannot assign to read-only variable: " + variable.name);
    }
}

} // namespace maxscript

// Declarations, functions, structs.
#include "standin/maxscript/parser.h"
#include "standin/maxscript/parser_depth.h"

namespace maxscript {

NodePointer Parser::declaration() {
    auto node = std::make_unique<DeclareNode>(token().spot);
    const bool is_persistent = take_word(u"persistent");
    const bool is_global = !is_word(u"local");
    if (is_persistent) {
        expect_word(u"global");
    } else {
        ++at_;
    }
    if (!is_global && scopes_.is_top_level() && scopes_.in_unit()) {
        fail(node->spot(), u"Compile error: No local declarations at top level");
    }
    do {
        skip_newlines();
        declared_item(*node, is_global, is_persistent);
    } while (take_symbol(u","));
    return node;
}

void Parser::declared_item(DeclareNode& node, bool is_global, bool is_persistent) {
    const Token name = take_name(u"a name");
    DeclareNode::Item item;
    item.is_local = !is_global;
    if (is_global) {
        const Variable variable = scopes_.declare_global(name.text, name.folded);
        item.variable = variable_node(name.spot, variable);
        if (is_persistent) {
            node.persistent.push_back(variable.cell);
        }
    }
    if (take_symbol(u"=")) {
        skip_newlines();
        item.first_value = expression();
    }
    // A local is not seen by its own first value.
    const Variable variable = is_global ? scopes_.find_global(scopes_.globals().declare(name.text))
                                        : scopes_.declare_local(name.text, name.folded);
    if (is_global && item.first_value) {
        check_assignable(name.spot, variable);
    }
    if (!is_global) {
        item.variable = variable_node(name.spot, variable);
    }
    if (item.first_value) {
        forget(name.spot, variable, item.first_value.get());
    }
    node.items.push_back(std::move(item));
}

NodePointer Parser::function_definition() {
    auto node = std::make_unique<FunctionNode>(token().spot);
    ++at_;
    const Token name = take_name(u"the function's name");
    const Variable variable = scopes_.declare(name.text, name.folded);
    check_assignable(name.spot, variable);
    node->variable = variable_node(name.spot, variable);
    // Its own body may call it by its new count of arguments.
    forget(name.spot, variable, nullptr);
    node->code = function_rest(name.text, scopes_.function().in_struct, variable.knowledge.get());
    return node;
}

std::shared_ptr<FunctionCode> Parser::function_rest(const Text& name, bool in_struct, Knowledge* knowledge) {
    auto code = std::make_shared<FunctionCode>();
    code->name = name;
    const int outer_depth = depth_;
    scopes_.begin_function(false, in_struct);
    parameters(*code);
    if (knowledge != nullptr) {
        knowledge->arguments = static_cast<int>(code->parameters);
    }
    expect_symbol(u"=");
    skip_newlines();
    code->body = expression();
    const FunctionScope function = scopes_.end_function();
    code->slots = function.most_slots;
    code->height = function.height - outer_depth + 1;
    return code;
}

void Parser::parameters(FunctionCode& code) {
    while (!is_symbol(u"=")) {
        const Spot spot = token().spot;
        if (token().kind != TokenKind::keyword) {
            const Token name = take_name(u"a parameter or =");
            if (!code.keywords.empty()) {
                fail(spot, u"Syntax error: a positional parameter stands behind one with a keyword");
            }
            const std::size_t before = scopes_.function().slots;
            scopes_.declare_local(name.text, name.folded);
            if (scopes_.function().slots == before) {
                fail(spot, u"Syntax error: two parameters have the name " + name.text);
            }
            ++code.parameters;
            continue;
        }
        const Token name = tokens_[at_++];
        KeywordParameter parameter;
        parameter.name = name.folded;
        const bool ends =
            is_symbol(u"=") || token().kind == TokenKind::keyword || token().kind == TokenKind::newline;
        if (!ends) {
            parameter.otherwise = operand();
        }
        const std::size_t before = scopes_.function().slots;
        scopes_.declare_local(name.text, name.folded);
        if (scopes_.function().slots == before) {
            fail(spot, u"Syntax error: two parameters have the name " + name.text);
        }
        code.keywords.push_back(std::move(parameter));
    }
}

// What computes a member's first value: a function without parameters.
std::shared_ptr<FunctionCode> Parser::body_code(const Text& name) {
    auto code = std::make_shared<FunctionCode>();
    code->name = name;
    const int outer_depth = depth_;
    scopes_.begin_function(false, true);
    code->body = expression();
    const FunctionScope function = scopes_.end_function();
    code->slots = function.most_slots;
    code->height = function.height - outer_depth + 1;
    return code;
}

NodePointer Parser::struct_definition() {
    auto node = std::make_unique<StructNode>(token().spot);
    ++at_;
    const Token name = take_name(u"the struct's name");
    const Variable variable = scopes_.declare(name.text, name.folded);
    check_assignable(name.spot, variable);
    forget(name.spot, variable, nullptr);
    node->variable = variable_node(name.spot, variable);
    node->layout = std::make_shared<StructLayout>();
    node->layout->name = name.text;
    skip_newlines();
    expect_symbol(u"(");
    skip_newlines();
    find_members(*node->layout);
    struct_members(node->layout);
    return node;
}

// Functions may use members that stand behind them, so the names are looked for first.
void Parser::find_members(StructLayout& layout) const {
    int depth = 0;
    bool at_start = true;
    for (std::size_t i = at_; i < tokens_.size(); ++i) {
        const Token& here = tokens_[i];
        if (here.kind == TokenKind::newline) {
            continue;
        }
        if (at_start) {
            find_member(layout, i);
            at_start = false;
            continue;
        }
        if (here.kind != TokenKind::symbol) {
            continue;
        }
        const bool opens = here.text == u"(" || here.text == u"#(" || here.text == u"[";
        const bool closes = here.text == u")" || here.text == u"]";
        depth += opens ? 1 : closes ? -1 : 0;
        if (depth < 0) {
            return;
        }
        at_start = depth == 0 && here.text == u",";
    }
}

void Parser::find_member(StructLayout& layout, std::size_t& index) const {
    StructMember member;
    while (index + 1 < tokens_.size()) {
        const Token& here = tokens_[index];
        const bool is_function =
            here.folded == u"fn" || here.folded == u"function" || here.folded == u"mapped";
        if (here.kind == TokenKind::word && is_function) {
            member.is_function = true;
        } else if (here.kind != TokenKind::newline) {
            break;
        }
        ++index;
    }
    const Token& name = tokens_[index];
    const bool is_name = name.kind == TokenKind::word || name.kind == TokenKind::quoted_word;
    if (!is_name || is_reserved(name)) {
        --index; // not a member; the reader proper says what is wrong
        return;
    }
    member.name = name.text;
    if (!layout.index.emplace(name.folded, layout.members.size()).second) {
        fail(name.spot, u"Compile error: the struct has two members " + name.text);
    }
    if (!member.is_function) {
        member.data_index = layout.data.size();
        layout.data.push_back(layout.members.size());
    }
    layout.members.push_back(std::move(member));
}

void Parser::struct_members(const std::shared_ptr<StructLayout>& layout) {
    scopes_.begin_block();
    for (const auto& entry : layout->index) {
        scopes_.declare_member(entry.first, layout, entry.second);
    }
    const std::size_t calls_before = member_calls_.size();
    while (true) {
        skip_newlines();
        if (is_symbol(u")")) {
            fail(token().spot, layout->members.empty() ? u"Syntax error: a struct without members"
                                                       : u"Syntax error: a comma before the struct's )");
        }
        struct_member(*layout);
        skip_before(u",");
        if (take_symbol(u")")) {
            break;
        }
        expect_symbol(u",");
    }
    scopes_.end_block();
    check_member_counts(*layout);
    member_calls_.resize(calls_before);
}

void Parser::struct_member(StructLayout& layout) {
    const bool is_function = is_word(u"fn") || is_word(u"function");
    at_ += is_function ? 1 : 0;
    const Token name = take_name(u"a member");
    const auto found = layout.index.find(name.folded);
    if (found == layout.index.end()) {
        fail(name.spot, u"Syntax error: unexpected " + name.text);
    }
    StructMember& member = layout.members[found->second];
    if (is_function) {
        member.code = function_rest(name.text, true, nullptr);
    } else if (take_symbol(u"=")) {
        skip_newlines();
        member.code = body_code(name.text);
    }
}

} // namespace maxscript

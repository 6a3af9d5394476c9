// Declarations, functions, structs.
#include "standin/maxscript/parser.h"

namespace maxscript {

NodePointer Parser::declaration() {
    auto node = std::make_unique<DeclareNode>(token().spot);
    const bool is_global = take(u"global");
    if (!is_global) {
        expect(u"local");
        if (scopes_.is_top_level() && scopes_.in_unit()) {
            fail(node->spot(), u"Compile error: No local declarations at top level");
        }
    }
    do {
        skip_newlines();
        declared_item(*node, is_global);
    } while (take(u","));
    return node;
}

void Parser::declared_item(DeclareNode& node, bool is_global) {
    const Token name = take_name(u"a name");
    DeclareNode::Item item;
    item.is_local = !is_global;
    Variable variable;
    if (is_global) {
        variable = scopes_.declare_global(name.text, name.folded);
    }
    if (take(u"=")) {
        skip_newlines();
        item.first_value = expression();
    }
    // Declared last: the first value cannot use its own local.
    if (!is_global) {
        variable = scopes_.declare_local(name.text, name.folded);
    }
    if (item.first_value) {
        check_assignable(name.spot, variable);
        forget(name.spot, variable, item.first_value.get());
    }
    item.variable = variable_node(name.spot, variable);
    node.items.push_back(std::move(item));
}

Variable Parser::defined(const Token& name) {
    Variable variable = scopes_.declare(name.text, name.folded);
    check_assignable(name.spot, variable);
    forget(name.spot, variable, nullptr);
    return variable;
}

NodePointer Parser::function_definition() {
    auto node = std::make_unique<FunctionNode>(token().spot);
    ++at_;
    const Token name = take_name(u"the function's name");
    const Variable variable = defined(name);
    node->variable = variable_node(name.spot, variable);
    node->code = function_rest(name.text, scopes_.function().in_struct, variable.knowledge.get());
    return node;
}

std::shared_ptr<FunctionCode> Parser::function_rest(const Text& name, bool in_struct, Knowledge* knowledge) {
    auto code = std::make_shared<FunctionCode>();
    code->name = name;
    scopes_.begin_function(false, in_struct);
    parameters(*code);
    // Before the body: it may call the function itself.
    if (knowledge != nullptr) {
        knowledge->arguments = static_cast<int>(code->parameters);
    }
    expect(u"=");
    skip_newlines();
    body(*code);
    return code;
}

void Parser::parameters(FunctionCode& code) {
    while (!is(u"=")) {
        const Token name = token();
        if (name.kind == TokenKind::keyword) {
            ++at_;
            KeywordParameter parameter;
            parameter.name = name.folded;
            if (!is(u"=") && token().kind != TokenKind::keyword && token().kind != TokenKind::newline) {
                parameter.fallback = operand();
            }
            code.keywords.push_back(std::move(parameter));
        } else {
            take_name(u"a parameter or =");
            if (!code.keywords.empty()) {
                fail(name.spot, u"Syntax error: a positional parameter stands behind one with a keyword");
            }
            ++code.parameters;
        }
        const std::size_t before = scopes_.function().slots;
        scopes_.declare_local(name.text, name.folded);
        if (scopes_.function().slots == before) {
            fail(name.spot, u"Syntax error: two parameters have the name " + name.text);
        }
    }
}

// Ends the function that the scopes began.
void Parser::body(FunctionCode& code) {
    code.body = expression();
    const FunctionScope function = scopes_.end_function();
    code.slots = function.most_slots;
    code.height = function.height - depth_ + 1;
}

NodePointer Parser::struct_definition() {
    auto node = std::make_unique<StructNode>(token().spot);
    ++at_;
    const Token name = take_name(u"the struct's name");
    node->variable = variable_node(name.spot, defined(name));
    node->layout = std::make_shared<StructLayout>();
    node->layout->name = name.text;
    skip_newlines();
    expect(u"(");
    skip_newlines();
    find_members(*node->layout);
    struct_members(node->layout);
    return node;
}

// Functions may use members that are declared after them, so the names are collected first.
void Parser::find_members(StructLayout& layout) const {
    int depth = 0;
    bool at_start = true;
    bool is_function = false;
    for (std::size_t i = at_; i < tokens_.size() && depth >= 0; ++i) {
        const Token& here = tokens_[i];
        const bool is_definition = is_this(here, u"fn") || is_this(here, u"function");
        if (at_start && (is_definition || here.kind == TokenKind::newline)) {
            is_function = is_function || is_definition;
            continue;
        }
        if (at_start && is_name(here)) {
            add_member(layout, here, is_function);
        }
        const bool opens = is_this(here, u"(") || is_this(here, u"#(") || is_this(here, u"[");
        const bool closes = is_this(here, u")") || is_this(here, u"]");
        depth += opens ? 1 : closes ? -1 : 0;
        at_start = depth == 0 && is_this(here, u",");
        is_function = false;
    }
}

void Parser::add_member(StructLayout& layout, const Token& name, bool is_function) const {
    if (!layout.index.emplace(name.folded, layout.members.size()).second) {
        fail(name.spot, u"Compile error: the struct has two members " + name.text);
    }
    StructMember member;
    member.name = name.text;
    member.is_function = is_function;
    if (!is_function) {
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
        if (is(u")")) {
            fail(token().spot, layout->members.empty() ? u"Syntax error: a struct without members"
                                                       : u"Syntax error: a comma before the struct's )");
        }
        struct_member(*layout);
        skip_before(u",");
        if (take(u")")) {
            break;
        }
        expect(u",");
    }
    scopes_.end_block();
    check_member_counts(*layout);
    member_calls_.resize(calls_before);
}

void Parser::struct_member(StructLayout& layout) {
    const bool is_function = take(u"fn") || take(u"function");
    const Token name = take_name(u"a member");
    const auto found = layout.index.find(name.folded);
    if (found == layout.index.end()) {
        fail(name.spot, u"Syntax error: unexpected " + name.text);
    }
    StructMember& member = layout.members[found->second];
    if (is_function) {
        member.code = function_rest(name.text, true, nullptr);
    } else if (take(u"=")) {
        skip_newlines();
        // The first value is computed by a function without parameters.
        member.code = std::make_shared<FunctionCode>();
        member.code->name = name.text;
        scopes_.begin_function(false, true);
        body(*member.code);
    }
}

} // namespace maxscript

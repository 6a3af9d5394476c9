// Reads a script, one top-level expression after another. Internal to the language.
#pragma once

#include "standin/maxscript/nodes.h"
#include "standin/maxscript/scopes.h"
#include "standin/maxscript/script_error.h"

#include <algorithm>

namespace maxscript {

// Throws for the first byte that is not ASCII.
void refuse_non_ascii(const std::string& bytes, const Text* file_name);

class Parser {
public:
    // `file_name` outlives the parser and what it makes.
    Parser(Globals& globals, const Text& source, const Text* file_name);

    // Null at the end. Throws ScriptError. Declares names in the globals as it reads them.
    std::shared_ptr<FunctionCode> next_unit();

    // Collects refusals of the kind `check` and reads on instead of throwing them.
    void collect_refusals(std::vector<ScriptError>& refusals) { refusals_ = &refusals; }

private:
    // Tokens. (parser.cpp)
    const Token& token() const { return tokens_[at_]; }
    const Token& peek() const { return tokens_[std::min(at_ + 1, tokens_.size() - 1)]; }
    // Whether the token is this symbol or word.
    bool is(const char16_t* text) const { return is_this(token(), text); }
    static bool is_this(const Token& candidate, const char16_t* text);
    bool is_empty_call() const { return is(u"(") && is_this(peek(), u")"); }
    bool take(const char16_t* text);
    void expect(const char16_t* text);
    void skip_newlines();
    void skip_separators();
    // The same, but only before `text`; otherwise only line ends.
    void skip_before(const char16_t* text);
    void end_statement(bool in_block);
    Token take_name(const char16_t* what);
    [[noreturn]] void fail(const Spot& spot, const Text& message) const;
    [[noreturn]] void fail_expected(const char16_t* what) const;
    [[noreturn]] void unexpected() const;
    void refuse(const Spot& spot, const Text& message) const;

    // Expressions by rank. (parser_expressions.cpp)
    NodePointer expression();
    NodePointer simple_expression();
    NodePointer assignment(NodePointer target);
    NodePointer assign_name();
    using Reader = NodePointer (Parser::*)();
    NodePointer logic(const char16_t* word, Reader read_operand);
    NodePointer logic_or() { return logic(u"or", &Parser::logic_and); }
    NodePointer logic_and() { return logic(u"and", &Parser::logic_not); }
    NodePointer logic_not();
    NodePointer comparison();
    NodePointer chain(const char16_t* one, const char16_t* other, Reader read_operand);
    NodePointer sum() { return chain(u"+", u"-", &Parser::product); }
    NodePointer product() { return chain(u"*", u"/", &Parser::conversion); }
    NodePointer conversion();

    // Operands and calls. (parser_operands.cpp)
    NodePointer call();
    NodePointer finish_call(NodePointer callee);
    void call_argument(CallNode& node);
    bool starts_argument() const;
    NodePointer operand();
    NodePointer postfix(NodePointer object);
    NodePointer factor();
    NodePointer symbol_factor();
    NodePointer negated();
    NodePointer name_use();
    NodePointer block();
    NodePointer array();
    NodePointer reference();
    NodePointer variable_node(const Spot& spot, const Variable& variable) const;
    Variable known_variable(const Token& name);

    // Statements. (parser_statements.cpp)
    NodePointer statement();
    NodePointer if_statement();
    NodePointer while_loop();
    NodePointer for_loop();
    void for_source(ForNode& node);
    NodePointer for_clause(const char16_t* word);
    NodePointer case_statement();
    void case_branch(CaseNode& node);
    NodePointer try_statement();
    NodePointer undo_context();

    // Definitions. (parser_definitions.cpp)
    NodePointer declaration();
    void declared_item(DeclareNode& node, bool is_global);
    Variable defined(const Token& name);
    NodePointer function_definition();
    std::shared_ptr<FunctionCode> function_rest(const Text& name, bool in_struct, Knowledge* knowledge);
    void parameters(FunctionCode& code);
    void body(FunctionCode& code);
    NodePointer struct_definition();
    void find_members(StructLayout& layout) const;
    void add_member(StructLayout& layout, const Token& name, bool is_function) const;
    void struct_member(StructLayout& layout);
    void struct_members(const std::shared_ptr<StructLayout>& layout);

    // Mistakes that show before a script runs. (parser.cpp)
    void check_call(const CallNode& node);
    void check_format(const CallNode& node);
    void check_count(const CallNode& node);
    void check_member_counts(const StructLayout& layout);
    void forget(const Spot& spot, const Variable& variable, const Node* value);
    void check_assignable(const Spot& spot, const Variable& variable);
    const Variable* variable_of(const Node& node) const;

    // Counts how deep expressions are inside each other.
    class Depth {
    public:
        explicit Depth(Parser& parser);
        ~Depth() { --parser_.depth_; }
        Depth(const Depth&) = delete;
        Depth& operator=(const Depth&) = delete;

    private:
        Parser& parser_;
    };

    struct MemberCall {
        const StructLayout* layout;
        std::size_t index;
        std::size_t count;
        Spot spot;
    };

    Scopes scopes_;
    std::vector<Token> tokens_;
    std::size_t at_ = 0;
    int depth_ = 0;
    std::vector<ScriptError>* refusals_ = nullptr;
    std::vector<MemberCall> member_calls_;
    std::unordered_map<const Node*, Variable> used_; // the variables behind the names of this unit
};

} // namespace maxscript

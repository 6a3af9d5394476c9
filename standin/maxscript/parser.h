// Reads a script, one top-level expression after the other. Internal to the language.
#pragma once

#include "standin/maxscript/nodes.h"
#include "standin/maxscript/scopes.h"
#include "standin/maxscript/script_error.h"

namespace maxscript {

// Throws for the first byte that is not ASCII.
void refuse_non_ascii(const std::string& bytes, const Text* file_name);

class Parser {
public:
    // `file_name` outlives the parser and what it makes.
    Parser(Globals& globals, bool strict, const Text& source, const Text* file_name);

    // Null at the end. Throws ScriptError. Names are declared in the globals as they are met.
    std::shared_ptr<FunctionCode> next_unit();

    // Keeps going behind a refusal of the kind `check` and collects them instead.
    void collect_refusals(std::vector<ScriptError>& refusals) { refusals_ = &refusals; }

private:
    // Words. (parser.cpp)
    const Token& token() const { return tokens_[at_]; }
    const Token& peek(std::size_t ahead = 1) const;
    bool is_symbol(const char16_t* symbol) const;
    bool is_word(const char16_t* word) const;
    bool take_symbol(const char16_t* symbol);
    bool take_word(const char16_t* word);
    void expect_symbol(const char16_t* symbol);
    void expect_word(const char16_t* word);
    void skip_newlines();
    void skip_separators();
    // The same, but only when `symbol` or `word` follows; otherwise only line ends.
    void skip_before(const char16_t* symbol);
    void end_statement(bool in_block);
    bool is_reserved(const Token& candidate) const;
    Token take_name(const char16_t* what);
    [[noreturn]] void fail(const Spot& spot, const Text& message) const;
    [[noreturn]] void unexpected() const;
    void refuse(const Spot& spot, const Text& message) const;
    Text shown(const Token& candidate) const;

    // Expressions by rank. (parser_expressions.cpp)
    NodePointer expression();
    NodePointer plain_expression();
    NodePointer simple_expression();
    NodePointer assignment(NodePointer target);
    NodePointer assign_name();
    NodePointer logic_or();
    NodePointer logic_and();
    NodePointer logic_not();
    NodePointer comparison();
    NodePointer sum();
    NodePointer product();
    NodePointer power();
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
    NodePointer number();
    NodePointer name_use();
    NodePointer block();
    NodePointer array();
    NodePointer reference();
    NodePointer variable_node(const Spot& spot, const Variable& variable) const;
    Variable known_variable(const Token& name);

    // Statements. (parser_statements.cpp)
    bool starts_statement() const;
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
    bool starts_context() const;

    // Definitions. (parser_definitions.cpp)
    NodePointer declaration();
    void declared_item(DeclareNode& node, bool is_global, bool is_persistent);
    NodePointer function_definition();
    std::shared_ptr<FunctionCode> function_rest(const Text& name, bool in_struct, Knowledge* knowledge);
    void parameters(FunctionCode& code);
    std::shared_ptr<FunctionCode> body_code(const Text& name);
    NodePointer struct_definition();
    void find_members(StructLayout& layout) const;
    void find_member(StructLayout& layout, std::size_t& index) const;
    void struct_member(StructLayout& layout);
    void struct_members(const std::shared_ptr<StructLayout>& layout);

    // What only a check finds. (parser_checks.cpp)
    void check_call(const CallNode& node);
    void check_format(const CallNode& node);
    void check_count(const CallNode& node);
    void check_member_counts(const StructLayout& layout);
    void forget(const Spot& spot, const Variable& variable, const Node* value);
    void check_assignable(const Spot& spot, const Variable& variable);
    const Variable* variable_of(const Node& node) const;

    class Depth;

    struct MemberCall {
        const StructLayout* layout;
        std::size_t index;
        std::size_t count;
        Spot spot;
    };

    Scopes scopes_;
    bool strict_;
    std::vector<Token> tokens_;
    std::size_t at_ = 0;
    int depth_ = 0;
    std::vector<ScriptError>* refusals_ = nullptr;
    std::vector<MemberCall> member_calls_;
    std::unordered_map<const Node*, Variable> used_; // what the names in the unit that is being read mean
};

} // namespace maxscript

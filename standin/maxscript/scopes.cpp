#include "standin/maxscript/scopes.h"

#include <algorithm>

namespace maxscript {

void Scopes::begin_function(bool is_unit, bool in_struct) {
    FunctionScope function;
    function.is_unit = is_unit;
    function.in_struct = in_struct;
    functions_.push_back(function);
    begin_block();
}

FunctionScope Scopes::end_function() {
    end_block();
    const FunctionScope function = functions_.back();
    functions_.pop_back();
    return function;
}

void Scopes::begin_block() {
    Scope scope;
    scope.function = functions_.size() - 1;
    scope.slots_before = functions_.back().slots;
    scopes_.push_back(std::move(scope));
}

void Scopes::end_block() {
    functions_[scopes_.back().function].slots = scopes_.back().slots_before;
    scopes_.pop_back();
}

Scopes::Answer Scopes::find(const Text& folded_name, Variable& variable) {
    for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
        const auto found = scope->names.find(folded_name);
        if (found == scope->names.end()) {
            continue;
        }
        variable = found->second;
        const bool on_stack = variable.kind == Variable::Kind::slot;
        return on_stack && scope->function + 1 != functions_.size() ? Answer::outer_local : Answer::found;
    }
    const CellPointer cell = globals_.find(folded_name);
    if (!cell) {
        return Answer::unknown;
    }
    variable = find_global(cell);
    return Answer::found;
}

Variable Scopes::find_global(const CellPointer& cell) {
    Variable variable;
    variable.name = cell->name;
    variable.cell = cell;
    std::shared_ptr<Knowledge>& knowledge = known_globals_[cell.get()];
    if (!knowledge) {
        knowledge = variable.knowledge;
    }
    variable.knowledge = knowledge;
    return variable;
}

Variable Scopes::declare(const Text& name, const Text& folded_name) {
    return is_top_level() && in_unit() ? declare_global(name, folded_name) : declare_local(name, folded_name);
}

Variable Scopes::declare_local(const Text& name, const Text& folded_name) {
    Scope& scope = scopes_.back();
    const auto found = scope.names.find(folded_name);
    if (found != scope.names.end() && found->second.kind == Variable::Kind::slot) {
        return found->second;
    }
    Variable variable;
    variable.name = name;
    FunctionScope& function = functions_.back();
    if (function.is_unit) {
        // A cell: functions of the same block may use it, and live longer than the block.
        variable.cell = std::make_shared<Cell>();
        variable.cell->name = name;
    } else {
        variable.kind = Variable::Kind::slot;
        variable.slot = function.slots++;
        function.most_slots = std::max(function.most_slots, function.slots);
    }
    scope.names[folded_name] = variable;
    return variable;
}

Variable Scopes::declare_global(const Text& name, const Text& folded_name) {
    Variable variable = find_global(globals_.declare(name));
    // Hides a local of an outer block.
    scopes_.back().names[folded_name] = variable;
    return variable;
}

void Scopes::declare_member(const Text& folded_name, const std::shared_ptr<const StructLayout>& layout,
                            std::size_t index) {
    Variable variable;
    variable.kind = Variable::Kind::member;
    variable.name = layout->members[index].name;
    variable.layout = layout;
    variable.slot = index;
    scopes_.back().names[folded_name] = variable;
}

} // namespace maxscript

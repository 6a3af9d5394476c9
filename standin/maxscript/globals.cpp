#include "standin/maxscript/globals.h"

#include <algorithm>

namespace maxscript {

void Cell::surrender(std::vector<Value>& content) {
    content.push_back(std::move(value));
    value = Value();
}

Value Cell::get() const {
    return getter ? getter() : value;
}

void Cell::set(const Value& new_value) {
    if (setter) {
        setter(new_value);
    } else {
        value = new_value;
    }
}

CellPointer Globals::find(const Text& folded_name) const {
    const auto found = cells_.find(folded_name);
    return found == cells_.end() ? CellPointer() : found->second;
}

CellPointer Globals::find_any(const Text& name) const {
    const CellPointer cell = find(name);
    return cell ? cell : find(folded(name));
}

CellPointer Globals::declare(const Text& name) {
    CellPointer& cell = cells_[folded(name)];
    if (!cell) {
        cell = std::make_shared<Cell>();
        cell->name = name;
    }
    return cell;
}

bool Globals::get(const Text& name, Value& value) const {
    const CellPointer cell = find_any(name);
    if (cell) {
        value = cell->get();
    }
    return cell != nullptr;
}

bool Globals::set(const Text& name, const Value& value) {
    const CellPointer cell = find_any(name);
    if (!cell || cell->is_read_only()) {
        return false;
    }
    cell->set(value);
    return true;
}

bool Globals::remove(const Text& name) {
    return cells_.erase(folded(name)) != 0;
}

std::vector<Text> Globals::names(Which which) const {
    std::vector<Text> names;
    for (const auto& entry : cells_) {
        const Cell& cell = *entry.second;
        if (which == Which::all || (which == Which::of_scripts ? !cell.from_host : cell.persistent)) {
            names.push_back(cell.name);
        }
    }
    return names;
}

bool Globals::is_persistent(const Text& name) const {
    const CellPointer cell = find(folded(name));
    return cell && cell->persistent;
}

void Globals::set_persistent(const Text& name, bool persistent) {
    const CellPointer cell = persistent ? declare(name) : find(folded(name));
    if (cell) {
        cell->persistent = persistent;
    }
}

void Globals::add_constant(const Text& name, const Value& value) {
    const CellPointer cell = declare(name);
    cell->value = value;
    cell->constant = true;
    cell->from_host = true;
}

void Globals::add_variable(const Text& name, std::function<Value()> getter,
                           std::function<void(const Value&)> setter) {
    const CellPointer cell = declare(name);
    cell->getter = std::move(getter);
    cell->setter = std::move(setter);
    cell->from_host = true;
}

void Globals::add_function(const Text& name, int fewest, int most, const std::vector<Text>& keywords,
                           NativeCode code) {
    add_constant(name, make_native(name, fewest, most, keywords, std::move(code)));
}

void Globals::wrap_function(const Text& name, const std::function<NativeCode(NativeCode original)>& wrap) {
    NativeFunction function = find(folded(name))->value.as_native();
    function.code = wrap(std::move(function.code));
    add_constant(name, Value::native(std::make_shared<NativeFunction>(std::move(function))));
}

Value make_native(const Text& name, int fewest, int most, const std::vector<Text>& keywords,
                  NativeCode code) {
    auto function = std::make_shared<NativeFunction>();
    function->name = name;
    function->fewest = fewest;
    function->most = most;
    std::transform(keywords.begin(), keywords.end(), std::back_inserter(function->keywords), folded);
    function->code = std::move(code);
    return Value::native(std::move(function));
}

} // namespace maxscript

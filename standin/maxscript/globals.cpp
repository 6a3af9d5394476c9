#include "standin/maxscript/globals.h"

#include <algorithm>

namespace maxscript {

void Cell::surrender(std::vector<Value>& content) {
    content.push_back(std::move(value));
    value = Value();
}

CellPointer Globals::find(const Text& name) const {
    return find_folded(folded(name));
}

CellPointer Globals::find_folded(const Text& folded_name) const {
    const auto found = cells_.find(folded_name);
    return found == cells_.end() ? CellPointer() : found->second;
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
    const CellPointer cell = find(name);
    if (!cell) {
        return false;
    }
    value = cell->getter ? cell->getter() : cell->value;
    return true;
}

bool Globals::set(const Text& name, const Value& value) {
    const CellPointer cell = find(name);
    if (!cell || cell->constant || (cell->getter && !cell->setter)) {
        return false;
    }
    if (cell->setter) {
        cell->setter(value);
    } else {
        cell->value = value;
    }
    return true;
}

bool Globals::remove(const Text& name) {
    return cells_.erase(folded(name)) != 0;
}

std::vector<Text> Globals::gather(bool with_host) const {
    std::vector<CellPointer> cells;
    for (const auto& entry : cells_) {
        if (with_host || !entry.second->from_host) {
            cells.push_back(entry.second);
        }
    }
    std::sort(cells.begin(), cells.end(), [](const CellPointer& one, const CellPointer& other) {
        return compare_folded(one->name, other->name) < 0;
    });
    std::vector<Text> names;
    names.reserve(cells.size());
    for (const CellPointer& cell : cells) {
        names.push_back(cell->name);
    }
    return names;
}

bool Globals::is_persistent(const Text& name) const {
    const CellPointer cell = find(name);
    return cell && cell->persistent;
}

void Globals::mark_persistent(const Text& name) {
    declare(name)->persistent = true;
}

bool Globals::unmark_persistent(const Text& name) {
    const CellPointer cell = find(name);
    const bool was_marked = cell && cell->persistent;
    if (was_marked) {
        cell->persistent = false;
    }
    return was_marked;
}

std::vector<Text> Globals::persistent_names() const {
    std::vector<Text> names = gather(true);
    names.erase(
        std::remove_if(names.begin(), names.end(), [this](const Text& name) { return !is_persistent(name); }),
        names.end());
    return names;
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

void Globals::add_function(NativeFunction function) {
    const Text name = function.name;
    add_constant(name, Value::native(std::make_shared<NativeFunction>(std::move(function))));
}

void Globals::add_function(const Text& name, int fewest, int most, const std::vector<Text>& keywords,
                           NativeCode code) {
    NativeFunction function;
    function.name = name;
    function.fewest = fewest;
    function.most = most;
    for (const Text& keyword : keywords) {
        function.keywords.push_back(folded(keyword));
    }
    function.code = std::move(code);
    add_function(std::move(function));
}

} // namespace maxscript

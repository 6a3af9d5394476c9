// Functions of arrays.
#include "standin/maxscript/operations.h"

#include <algorithm>
#include <functional>

namespace maxscript {

namespace {

using Order =
    std::function<bool(const Value& one, const Value& other)>; // whether one comes strictly after other

// Our own merge sort: an order made by a script may contradict itself, which is undefined in std::sort.
void merge_sort(Interpreter& interpreter, std::vector<Value>& items, const Order& comes_after) {
    std::vector<Value> merged(items.size());
    for (std::size_t width = 1; width < items.size(); width *= 2) {
        for (std::size_t start = 0; start < items.size(); start += 2 * width) {
            const std::size_t middle = std::min(start + width, items.size());
            const std::size_t end = std::min(start + 2 * width, items.size());
            std::size_t left = start;
            std::size_t right = middle;
            for (std::size_t to = start; to < end; ++to) {
                interpreter.charge(0);
                const bool takes_right =
                    left == middle || (right < end && comes_after(items[left], items[right]));
                merged[to] = items[takes_right ? right++ : left++];
            }
        }
        items.swap(merged);
    }
}

void add_element(Arguments& arguments) {
    std::vector<Value>& items = arguments.array(0).items;
    refuse_growth(arguments.interpreter(), items.size());
    items.push_back(arguments[1]);
}

Value append(Arguments& arguments) {
    add_element(arguments);
    return arguments[0];
}

Value append_if_unique(Arguments& arguments) {
    Interpreter& interpreter = arguments.interpreter();
    const std::vector<Value>& items = arguments.array(0).items;
    interpreter.charge(items.size() * 8);
    for (const Value& item : items) {
        if (equal_values(interpreter, item, arguments[1])) {
            return Value::boolean(false);
        }
    }
    add_element(arguments);
    return Value::boolean(true);
}

Value join(Arguments& arguments) {
    extend(arguments.interpreter(), arguments.array(0).items, arguments[1]);
    return arguments[0];
}

Value find_item(Arguments& arguments) {
    Interpreter& interpreter = arguments.interpreter();
    const std::vector<Value>& items = arguments.array(0).items;
    const Value wanted = arguments[1];
    for (std::size_t i = 0; i < items.size(); ++i) {
        interpreter.charge(0);
        if (equal_values(interpreter, items[i], wanted)) {
            return Value::integer(static_cast<std::int32_t>(i) + 1);
        }
    }
    return Value::integer(0);
}

// Calls the script's order function: below, at or above 0.
std::int32_t ask_order(Arguments& arguments, const Value& function, const Value& one, const Value& other) {
    Interpreter& interpreter = arguments.interpreter();
    const StackMark mark(interpreter);
    interpreter.push(one);
    interpreter.push(other);
    const Value answer = interpreter.call(function, 2, arguments.keywords());
    std::int32_t order = 0;
    if (!number_to_integer(answer, order)) {
        interpreter.fail_conversion(answer, u"Integer");
    }
    return order;
}

Value quick_sort(Arguments& arguments) {
    std::vector<Value> items = arguments.array(0).items;
    const Value function = arguments[1];
    merge_sort(arguments.interpreter(), items, [&](const Value& one, const Value& other) {
        return ask_order(arguments, function, one, other) > 0;
    });
    arguments.array(0).items = std::move(items);
    return Value::ok();
}

// The least or greatest of the arguments.
Value extreme(Arguments& arguments, int wanted) {
    Value best = arguments[0];
    for (std::size_t i = 1; i < arguments.count(); ++i) {
        if (compare_values(arguments.interpreter(), u">", arguments[i], best) == wanted) {
            best = arguments[i];
        }
    }
    return best;
}

} // namespace

void refuse_growth(Interpreter& interpreter, std::size_t size) {
    if (size >= kMostElements) {
        interpreter.stop_at_limit(u"an array grows too large");
    }
}

void extend(Interpreter& interpreter, std::vector<Value>& items, const Value& collection) {
    std::vector<Value> more;
    if (!elements_of(interpreter, collection, more)) {
        interpreter.fail_conversion(collection, u"Array");
    }
    refuse_growth(interpreter, items.size() + more.size());
    interpreter.charge(more.size() * 16);
    items.insert(items.end(), more.begin(), more.end());
}

void add_array_functions(Globals& globals) {
    globals.add_function(u"append", 2, 2, {}, append);
    globals.add_function(u"appendIfUnique", 2, 2, {}, append_if_unique);
    globals.add_function(u"join", 2, 2, {}, join);
    globals.add_function(u"findItem", 2, 2, {}, find_item);
    globals.add_function(u"qsort", 2, 2, {u"*"}, quick_sort);
    globals.add_function(u"amin", 2, kAnyCount, {}, [](Arguments& a) { return extreme(a, -1); });
    globals.add_function(u"amax", 2, kAnyCount, {}, [](Arguments& a) { return extreme(a, 1); });
}

} // namespace maxscript

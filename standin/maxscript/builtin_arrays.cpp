// Functions of arrays.
#include "standin/maxscript/engine.h"

#include <algorithm>
#include <functional>

namespace maxscript {

namespace {

using Order = std::function<bool(const Value& one, const Value& other)>; // one comes strictly after other

// Our own merge sort: an order made by a script may contradict itself, which std::sort does not bear.
void merge_sort(Engine& engine, std::vector<Value>& items, const Order& comes_after) {
    std::vector<Value> merged(items.size());
    for (std::size_t width = 1; width < items.size(); width *= 2) {
        for (std::size_t start = 0; start < items.size(); start += 2 * width) {
            const std::size_t middle = std::min(start + width, items.size());
            const std::size_t end = std::min(start + 2 * width, items.size());
            std::size_t left = start;
            std::size_t right = middle;
            for (std::size_t to = start; to < end; ++to) {
                engine.charge(0);
                const bool takes_right =
                    left == middle || (right < end && comes_after(items[left], items[right]));
                merged[to] = items[takes_right ? right++ : left++];
            }
        }
        items.swap(merged);
    }
}

void refuse_growth(Arguments& arguments, std::size_t size) {
    if (size > kMostElements) {
        arguments.interpreter().engine().stop_at_limit(u"an array grows too large");
    }
}

Value append(Arguments& arguments) {
    refuse_growth(arguments, arguments.array(0).items.size());
    arguments.array(0).items.push_back(arguments[1]);
    return arguments[0];
}

Value append_if_unique(Arguments& arguments) {
    Engine& engine = arguments.interpreter().engine();
    std::vector<Value>& items = arguments.array(0).items;
    engine.charge(items.size() * 8);
    for (const Value& item : items) {
        if (equal_values(engine, item, arguments[1])) {
            return Value::boolean(false);
        }
    }
    refuse_growth(arguments, items.size());
    items.push_back(arguments[1]);
    return Value::boolean(true);
}

Value join(Arguments& arguments) {
    std::vector<Value> more;
    if (!elements_of(arguments.interpreter().engine(), arguments[1], more)) {
        arguments.fail_conversion(1, u"Array");
    }
    std::vector<Value>& items = arguments.array(0).items;
    refuse_growth(arguments, items.size() + more.size());
    arguments.interpreter().charge(more.size() * 16);
    items.insert(items.end(), more.begin(), more.end());
    return arguments[0];
}

Value find_item(Arguments& arguments) {
    Engine& engine = arguments.interpreter().engine();
    const std::vector<Value>& items = arguments.array(0).items;
    const Value wanted = arguments[1];
    for (std::size_t i = 0; i < items.size(); ++i) {
        engine.charge(0);
        if (equal_values(engine, items[i], wanted)) {
            return Value::integer(static_cast<std::int32_t>(i) + 1);
        }
    }
    return Value::integer(0);
}

// Calls a script's order: below, at or above 0.
std::int32_t ask_order(Arguments& arguments, const Value& function, const Value& one, const Value& other) {
    Engine& engine = arguments.interpreter().engine();
    engine.push(one);
    engine.push(other);
    struct Leave {
        Engine& engine;
        ~Leave() { engine.drop_to(engine.top() - 2); }
    } leave{engine};
    const Value answer = engine.call(function, 2, arguments.keywords());
    std::int32_t order = 0;
    if (!number_to_integer(answer, order)) {
        engine.fail(u"Unable to convert: " + printed_text(engine, answer) + u" to type: Integer");
    }
    return order;
}

Value quick_sort(Arguments& arguments) {
    std::vector<Value> items = arguments.array(0).items;
    const Value function = arguments[1];
    merge_sort(arguments.interpreter().engine(), items, [&](const Value& one, const Value& other) {
        return ask_order(arguments, function, one, other) > 0;
    });
    arguments.array(0).items = std::move(items);
    return Value::ok();
}

// The least or greatest of an array, or of the arguments.
Value extreme(Arguments& arguments, int wanted) {
    Engine& engine = arguments.interpreter().engine();
    std::vector<Value> items;
    if (arguments.count() == 1 && arguments[0].is(Kind::array)) {
        items = arguments.array(0).items;
    } else {
        for (std::size_t i = 0; i < arguments.count(); ++i) {
            items.push_back(arguments[i]);
        }
    }
    Value best;
    for (std::size_t i = 0; i < items.size(); ++i) {
        engine.charge(0);
        if (i == 0 || compare_values(engine, u">", items[i], best) == wanted) {
            best = items[i];
        }
    }
    return best;
}

} // namespace

void add_array_functions(Globals& globals) {
    globals.add_function(u"append", 2, 2, {}, append);
    globals.add_function(u"appendIfUnique", 2, 2, {}, append_if_unique);
    globals.add_function(u"join", 2, 2, {}, join);
    globals.add_function(u"findItem", 2, 2, {}, find_item);
    globals.add_function(u"qsort", 2, 2, {u"*"}, quick_sort);
    globals.add_function(u"amin", 1, kAnyCount, {}, [](Arguments& a) { return extreme(a, -1); });
    globals.add_function(u"amax", 1, kAnyCount, {}, [](Arguments& a) { return extreme(a, 1); });
}

} // namespace maxscript

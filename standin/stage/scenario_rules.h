// What a scenario may say, as one table: which object has which key, and what the key's value may be. The
// check in scenario_check reads it; docs/scenario.md explains it.
//
// The types: `text`, `whole`, `number`, `flag`, `true`, `null`, `any`; `=word` is that very word; `{name}` an
// object of that name; `[type]` a list; `<type>` an object with free keys, `<#type>` one whose keys are
// numbers. Commas part alternatives. A key with a closing `!` must be there.
#pragma once

#include <cstddef>

namespace stage {

struct KeyRule {
    const char* object;
    const char* key;
    const char* type;
};

// Objects that hold exactly one of their keys.
struct ChoiceRule {
    const char* object;
};

const KeyRule* key_rules(std::size_t& count);
bool holds_exactly_one(const char* object);

} // namespace stage

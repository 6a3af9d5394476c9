// The switches of the mutated sources: the first include of each.
#pragma once
#pragma GCC system_header

// True when mutant `number` is the one that the environment variable TARVO_MUTANT names. Also notes that a
// run came here.
bool mutant(int number);

// Notes that a run came to a variable whose initializer holds the mutants from `first` to `last`.
void mutants_used(int first, int last);

#define TARVO_MUTANT_OPERATION(name, original, changed)                                                      \
    template <class One, class Other>                                                                        \
    auto mutant_##name(int number, One one, Other other)->decltype(one original other) {                     \
        return mutant(number) ? one changed other : one original other;                                      \
    }

// The same with two mutants of one operator.
#define TARVO_MUTANT_RELATION(name, original, first, second)                                                 \
    template <class One, class Other>                                                                        \
    bool mutant_##name(int number, const One& one, const Other& other) {                                     \
        return mutant(number)       ? one first other                                                        \
               : mutant(number + 1) ? one second other                                                       \
                                    : one original other;                                                    \
    }

TARVO_MUTANT_RELATION(less, <, <=, >=)
TARVO_MUTANT_RELATION(at_most, <=, <, >)
TARVO_MUTANT_RELATION(greater, >, >=, <=)
TARVO_MUTANT_RELATION(at_least, >=, >, <)
TARVO_MUTANT_OPERATION(plus, +, -)
TARVO_MUTANT_OPERATION(minus, -, +)
TARVO_MUTANT_OPERATION(times, *, +)
TARVO_MUTANT_OPERATION(divided, /, *)
TARVO_MUTANT_OPERATION(modulo, %, /)
TARVO_MUTANT_OPERATION(left, <<, >>)
TARVO_MUTANT_OPERATION(right, >>, <<)
TARVO_MUTANT_OPERATION(bit_and, &, |)
TARVO_MUTANT_OPERATION(bit_or, |, &)
TARVO_MUTANT_OPERATION(bit_xor, ^, &)

template <class Value>
Value& mutant_step(int number, Value& value, bool up) {
    return mutant(number) != up ? ++value : --value;
}

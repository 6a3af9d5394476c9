// Where semicolons and blanks are allowed.
#include "tests/standin/maxscript/maxscript_fixture.h"

using script_fixture::run_cases;

TEST(MaxscriptSeparators, SemicolonIsAllowedBeforeElseCatchAndCommas) {
    run_cases({
        {"if false then 1; else 2", "2"},
        {"if true then 1; else 2", "1"},
        {"if true then 1; 5", "5"},
        {"try (throw \"x\"); catch (3)", "3"},
        {"struct S (a = 1;, b = 2); (S()).b", "2"},
        {"#(1;, 2)", "#(1, 2)"},
    });
}

TEST(MaxscriptSeparators, BlankIsAllowedBetweenHashAndBracket) {
    run_cases({{"# (1, 2)", "#(1, 2)"}, {"#\t()", "#()"}, {"(undo \"text\" on (4))", "4"}});
}

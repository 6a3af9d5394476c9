// Where a semicolon or a blank may stand, and what a power becomes.
#include "tests/standin/maxscript/maxscript_fixture.h"

using script_fixture::run_cases;

TEST(MaxscriptSeparators, ASemicolonMayStandBeforeWhatGoesOn) {
    run_cases({
        {"if false then 1; else 2", "2"},
        {"if true then 1; else 2", "1"},
        {"if true then 1; 5", "5"},
        {"try (throw \"x\"); catch (3)", "3"},
        {"struct S (a = 1;, b = 2); (S()).b", "2"},
        {"#(1;, 2)", "#(1, 2)"},
    });
}

TEST(MaxscriptSeparators, ABlankMayStandInTheOpeningOfAnArray) {
    run_cases({{"# (1, 2)", "#(1, 2)"}, {"#\t()", "#()"}, {"(undo \"text\" on (4))", "4"}});
}

TEST(MaxscriptSeparators, AnIntegerToAPowerIsRounded) {
    run_cases(
        {{"2 ^ 0.9", "2"}, {"2 ^ 0.1", "1"}, {"2 ^ 0.5", "1"}, {"2 ^ 3", "8"}, {"2.0 ^ 0.5", "1.41421"}});
}

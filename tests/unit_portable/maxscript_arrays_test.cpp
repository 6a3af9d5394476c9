// Arrays of the script language and their functions; how values look when they are printed.
#include "tests/unit_portable/maxscript_bench.h"

using script_bench::Case;
using script_bench::run_cases;

TEST(MaxscriptArrays, Elements) {
    run_cases({
        {"a = #(4, 5); a[1]", "4"},
        {"a = #(4, 5); a[3]", "undefined"},
        {"a = #(4, 5); a[4] = 1; a", "#(4, 5, undefined, 1)"},
        {"a = #(4, 5); a[0]", "1,15 Runtime error: array index must be +ve number, got: 0"},
        {"a = #(4, 5); a[-1] = 2", "1,15 Runtime error: array index must be +ve number, got: -1"},
        {"a = #(4, 5); a[\"x\"]", "1,15 Runtime error: array index must be +ve number, got: \"x\""},
        {"a = #(4, 5); a[1.9]", "4"},
        {"#(#(1, 2), #(3))[1][2]", "2"},
        {"#(1, 2).count", "2"},
        {"a = #(1, 2, 3); a.count = 1; a", "#(1)"},
        {"a = #(1); a.count = 3; a", "#(1, undefined, undefined)"},
        {"undefined[1]", "1,10 No \"\"get\"\" function for undefined"},
        {"x = 5; x[1] = 2", "1,9 No \"\"put\"\" function for 5"},
        {"#{1..3, 7}[2]", "true"},
        {"b = #{}; b[5] = true; b", "#{5}"},
        {"#{1, 2, 3, 9}.numberSet", "4"},
        {"#(1).foo", "1,5 Unknown property: \"foo\" in #(1)"},
    });
}

TEST(MaxscriptArrays, Changes) {
    run_cases({
        {"append #(1) 2", "#(1, 2)"},
        {"a = #(1); append a a; a.count", "2"},
        {"a = #(1); b = a; append a 2; b", "#(1, 2)"},
        {"appendIfUnique #(1, 2) 2", "false"},
        {"a = #(1); #(appendIfUnique a 3, a)", "#(true, #(1, 3))"},
        {"join #(1) #(2, 3)", "#(1, 2, 3)"},
        {"a = #(1, 2); join a a", "#(1, 2, 1, 2)"},
        {"join #(1) #{4..5}", "#(1, 4, 5)"},
        {"#(1) + #(2)", "#(1, 2)"},
        {"a = #(1); b = a + #(2); a", "#(1)"},
        {"deleteItem #(1, 2, 3) 2", "#(1, 3)"},
        {"deleteItem #(1) 5", "#(1)"},
        {"insertItem 9 #(1, 2) 2", "#(1, 9, 2)"},
        {"insertItem 9 #(1) 4", "#(1, undefined, undefined, 9)"},
        {"copy #(1, 2) #noMap", "#(1, 2)"},
        {"copy #(1, 2)", "1,1 Runtime error: the copy of an array needs #noMap"},
        {"a = #(#(1)); b = copy a #noMap; append b[1] 2; a", "#(#(1, 2))"},
        {"a = #(#(1)); b = deepCopy a; append b[1] 2; a", "#(#(1))"},
        {"makeUniqueArray #(1, 2, 1, 3, 2)", "#(1, 2, 3)"},
        {"append 5 1", "1,1 Unable to convert: 5 to type: Array"},
    });
}

TEST(MaxscriptArrays, SearchAndSort) {
    run_cases({
        {"findItem #(\"a\", \"b\") \"b\"", "2"},
        {"findItem #(\"a\", \"b\") \"B\"", "0"},
        {"findItem #(#a, #b) #B", "2"},
        {"findItem #(1, 2.0) 2", "2"},
        {"sort #(3, 1, 2)", "#(1, 2, 3)"},
        {"sort #(\"b\", \"a\", \"C\")", "#(\"C\", \"a\", \"b\")"},
        {"sort #()", "#()"},
        {"sort #(1, \"a\")", "1,1 Unable to convert: \"a\" to type: Integer"},
        {"sort #(undefined, 1)", "1,1 No \"\">\"\" function for undefined"},
        {"fn down a b = b - a; x = #(1, 3, 2); qsort x down; x", "#(3, 2, 1)"},
        {"fn order a b sign:1 = (a - b) * sign; x = #(1, 3, 2); qsort x order sign:-1; x", "#(3, 2, 1)"},
        {"fn up a b = a - b; x = #(9, 3, 2, 1); qsort x up start:2 end:3; x", "#(9, 2, 3, 1)"},
        {"fn first a b = stricmp a[1] b[1]; x = #(#(\"b\", 1), #(\"a\", 2), #(\"B\", 3)); qsort x first; x",
         "#(#(\"a\", 2), #(\"b\", 1), #(\"B\", 3))"},
        {"fn odd a b = 1; x = #(1, 2, 3); qsort x odd; x.count", "3"}, // contradicts itself
        {"fn bad a b = \"x\"; x = #(1, 2); qsort x bad", "1,32 Unable to convert: \"x\" to type: Integer"},
        {"fn bad a b = (throw \"in\"); x = #(2, 1); try (qsort x bad) catch (); x", "#(2, 1)"},
        {"fn up a b = a - b; bsearch 5 #(1, 5, 9) up", "5"},
        {"fn up a b = a - b; bsearch 4 #(1, 5, 9) up", "undefined"},
        {"amin #(3, 1, 2)", "1"},
        {"amax 3 7 2", "7"},
        {"amin #()", "undefined"},
    });
}

TEST(MaxscriptArrays, Printing) {
    run_cases({
        {"#()", "#()"},
        {"#(1, 2.5, \"a\", #b, true, undefined, #(1), 5f)",
         "#(1, 2.5, \"a\", #b, true, undefined, #(1), 5f)"},
        {"(for i = 1 to 20 collect i) as string",
         "\"#(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20)\""},
        {"(for i = 1 to 21 collect i) as string",
         "\"#(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, ...)\""},
        {"with printAllElements on ((for i = 1 to 22 collect i) as string)",
         "\"#(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22)\""},
        {"(with printAllElements on 1; (for i = 1 to 21 collect 1) as string).count", "66"},
        {"a = #(); append a a; a as string",
         "1,24 Runtime error: values stand too deep inside each other to be shown"},
        {"fn f a = 1; f", "f()"},
        {"abs", "abs()"},
        {"bit", "bit"},
        {"ok", "OK"},
        {"#{1..3, 5, 7..8}", "#{1..3, 5, 7..8}"},
    });
}

TEST(MaxscriptArrays, Bits) {
    run_cases({
        {"bit.and 12 10", "8"},
        {"bit.or 12 10", "14"},
        {"bit.xor 12 10", "6"},
        {"bit.not 0", "-1"},
        {"bit.shift 1 4", "16"},
        {"bit.shift 16 -4", "1"},
        {"bit.shift 1 40", "0"},
        {"bit.get 5 1", "true"},
        {"bit.get 5 2", "false"},
        {"bit.set 0 3 true", "4"},
        {"bit.set 7 1 false", "6"},
        {"bit.get 5 33", "1,4 Runtime error: bits are numbered from 1 to 32, got: 33"},
        {"bit.none 5", "1,4 Unknown property: \"none\" in bit"},
    });
}

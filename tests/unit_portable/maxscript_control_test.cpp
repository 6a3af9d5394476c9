// Branches, loops, errors and contexts of the script language.
#include "tests/unit_portable/maxscript_bench.h"

using script_bench::Case;
using script_bench::run_cases;

TEST(MaxscriptControl, If) {
    run_cases({
        {"if 1 < 2 then \"a\" else \"b\"", "\"a\""},
        {"if 1 > 2 then \"a\" else \"b\"", "\"b\""},
        {"if 1 > 2 then \"a\"", "undefined"},
        {"if 1 < 2 do 5", "5"},
        {"if 1 > 2 do 5", "undefined"},
        {"x = 3; if x == 1 then #a else if x == 3 then #b else #c", "#b"},
        {"if false then if true then 1 else 2 else 3", "3"},
        {"if true then if false then 1 else 2", "2"}, // else belongs to the nearest
        {"if false then 1\n\nelse 2", "2"},
        {"if true then 1\n5", "5"},
        {"if 1 then 2", "1,4 Type error: if-test requires BooleanClass, got: 1"},
        {"if undefined do 2", "1,4 Type error: if-test requires BooleanClass, got: undefined"},
        {"if true do 1 else 2", "1,14 Syntax error: unexpected else"},
        {"if true 1", "1,10 Syntax error: at the end of the script, expected then"},
    });
}

TEST(MaxscriptControl, Case) {
    run_cases({
        {"case 2 of (1: #a; 2: #b; default: #c)", "#b"},
        {"case 9 of (1: #a; default: #c)", "#c"},
        {"case 9 of (default: #c; 9: #a)", "#a"},
        {"case 9 of (1: #a)", "undefined"},
        {"case \"b\" of (\"a\": 1\n\"b\": 2)", "2"},
        {"case #B of\n(\n#a: 1\n#b: 2\n)", "2"},
        {"x = 5; case of ((x < 3): #low; (x < 10): #mid; default: #high)", "#mid"},
        {"v = 3; case 3 of (v: #same)", "#same"},
        {"case 1 of (1: (2; 3))", "3"},
        {"case 1 of (1 2)", "1,14 Syntax error: at a number, expected :"},
        {"case 1 of (1: 2", "1,16 Syntax error: unexpected the end of the script"},
    });
}

TEST(MaxscriptControl, For) {
    run_cases({
        {"for i = 1 to 3 collect i * i", "#(1, 4, 9)"},
        {"for i in 1 to 3 collect i", "#(1, 2, 3)"},
        {"for i = 3 to 1 by -1 collect i", "#(3, 2, 1)"},
        {"for i = 1 to 10 by 4 collect i", "#(1, 5, 9)"},
        {"for i = 3 to 1 collect i", "#()"},
        {"for i = 1 to 2 by 0.5 collect i", "#(1.0, 1.5, 2.0)"},
        {"for i = 1.0 to 1.5 by 0.1 collect i", "#(1.0, 1.1, 1.2, 1.3, 1.4, 1.5)"},
        {"for t = 0f to 10f by 5f collect t", "#(0f, 5f, 10f)"},
        {"for x in #(#a, #b) collect x", "#(#a, #b)"},
        {"for x in #{2..4} collect x", "#(2, 3, 4)"},
        {"for i = 1 to 6 where (mod i 2) == 0 collect i", "#(2, 4, 6)"},
        {"for i = 1 to 6 while i < 4 collect i", "#(1, 2, 3)"},
        {"for i = 1 to 9 while i < 7 where i > 4 collect i", "#(5, 6)"},
        {"for x in #(1, 2, 3)\n where x != 2\n collect x", "#(1, 3)"},
        {"for i = 1 to 3 do i", "OK"},
        {"for i = 1 to 5 collect (if i == 3 then dontCollect else i)", "#(1, 2, 4, 5)"},
        {"for i = 1 to 5 collect (if i == 3 do continue; i)", "#(1, 2, 4, 5)"},
        {"for i = 1 to 5 collect (if i == 3 do exit; i)", "#(1, 2)"},
        {"for i = 1 to 5 do (if i == 3 do exit)", "undefined"},
        {"for i = 1 to 5 do (if i == 3 do exit with i * 10)", "30"},
        {"for i = 1 to 2 collect (for j = 1 to 2 collect i * j)", "#(#(1, 2), #(2, 4))"},
        {"a = #(1, 2); for x in a do (if a.count < 5 do append a x); a", "#(1, 2, 1, 2, 1)"},
        {"n = 0; for i = 2147483646 to 2147483647 do n += 1; n", "2"},
        {"s = 0; for i = 1 to 3 do (i = i * 2; s += i); s", "12"},
    });
}

TEST(MaxscriptControl, ForRefused) {
    run_cases({
        {"for i = 1 to 5 by 0 do i", "1,1 Runtime error: For loop 'by' expression cannot be 0"},
        {"for i = 1 to \"a\" do i", "1,1 Runtime error: For loop limits must be numbers, got: \"a\""},
        {"for x in 5 do x", "1,10 Type error: For loop needs a collection, got: 5"},
        {"for i, j in #(1) do i", "1,6 a loop with several variables is newer than the host"},
        {"for i = 1 to 3 i", "1,16 Syntax error: unexpected i"},
        {"for 5 = 1 to 3 do i", "1,5 Syntax error: at a number, expected the name of the loop's variable"},
        {"exit", "1,1 Compile error: exit outside a loop"},
        {"fn f = continue", "1,8 Compile error: continue outside a loop"},
        {"for i = 1 to 3 do (fn g = exit)", "1,27 Compile error: exit outside a loop"},
        {"for i = 1 to 3 where 5 do i", "1,22 Type error: where-test requires BooleanClass, got: 5"},
    });
}

TEST(MaxscriptControl, While) {
    run_cases({
        {"i = 0; while i < 3 do i += 1", "3"},
        {"i = 5; while i < 3 do i += 1", "undefined"},
        {"i = 5; do i += 1 while i < 3; i", "6"},
        {"i = 0; do (i += 1)\nwhile i < 3\ni", "3"},
        {"i = 0; while true do (i += 1; if i == 4 do exit); i", "4"},
        {"i = 0; n = 0; while i < 5 do (i += 1; if i == 2 do continue; n += 1); n", "4"},
        {"while true do (exit with 7)", "7"},
        {"while 1 do 2", "1,7 Type error: while-test requires BooleanClass, got: 1"},
        {"while true 2", "1,13 Syntax error: at the end of the script, expected do"},
    });
}

TEST(MaxscriptControl, TryAndThrow) {
    run_cases({
        {"try 5 catch 6", "5"},
        {"try (throw \"x\") catch 6", "6"},
        {"try (throw \"x\") catch ()", "undefined"},
        {"try\n(\nthrow \"x\"\n)\ncatch\n(\n7\n)", "7"},
        {"try (throw \"x\") catch (getCurrentException())", "\"-- Runtime error: x\""},
        {"try (throw \"x\" 5) catch (getCurrentException())", "\"-- Runtime error: x: 5\""},
        {"try (undefined.foo) catch (getCurrentException())",
         "\"-- Unknown property: \"foo\" in undefined\""},
        {"try (try (throw \"a\") catch (throw \"b\")) catch (getCurrentException())",
         "\"-- Runtime error: b\""},
        {"try (try (throw \"a\") catch (throw())) catch (getCurrentException())", "\"-- Runtime error: a\""},
        {"try (throw \"a\") catch (try (throw \"b\") catch (); getCurrentException())",
         "\"-- Runtime error: a\""},
        {"getCurrentException()", "undefined"},
        {"x = 1; try (x = 2; throw \"a\"; x = 3) catch (); x", "2"},
        {"fn f a = (try (if a do throw \"in\"; 1) catch (2)); #(f true, f false)", "#(2, 1)"},
        {"n = 0; for i = 1 to 5 do (try (if i == 3 do throw \"a\"; n += 1) catch ()); n", "4"},
        {"for i = 1 to 3 do (try (exit) catch ())", "undefined"},
        {"throw \"stop\"", "1,1 Runtime error: stop"},
        {"1\n\n   throw \"stop\"", "3,4 Runtime error: stop"},
        {"throw()", "1,1 Runtime error: throw() outside catch"},
        {"try 5", "1,6 Syntax error: at the end of the script, expected catch"},
        {"try (1 +) catch ()", "1,9 Syntax error: unexpected )"}, // no compile errors are caught
        {"try (execute \"1 +\") catch (#caught)", "#caught"},
    });
}

TEST(MaxscriptControl, Contexts) {
    run_cases({
        {"with redraw off 5", "5"},
        {"with undo off (1; 2)", "2"},
        {"with undo \"delete\" on 3", "3"},
        {"undo off 4", "4"},
        {"with animate off, redraw off 6", "6"},
        {"with quiet on 7", "7"},
        {"fn f = (with redraw off (return 8); 9); f()", "8"},
        {"with nothing off 5", "1,6 Syntax error: the context nothing is not supported"},
        {"redraw = 5; redraw", "5"}, // no reserved word
        {"with redraw 5 6", "1,13 Type error: redraw requires BooleanClass, got: 5"},
    });
}

TEST(MaxscriptControl, Blocks) {
    run_cases({
        {"()", "undefined"},
        {"(1; 2)", "2"},
        {"(1\n2\n3)", "3"},
        {"x = (a = 4; a + 1)", "5"},
        {"(1; 2", "1,6 Syntax error: unexpected the end of the script"},
        {"(\n", "1,1 Syntax error: ( without its )"},
        {"1)", "1,2 Syntax error: unexpected )"},
        {"#(1, 2", "1,7 Syntax error: at the end of the script, expected ,"},
        {"#(1 2)", "1,5 Syntax error: unexpected a number"},
        {"#(1,)", "1,5 Syntax error: unexpected )"},
        {"a = #(1); a[1", "1,14 Syntax error: at the end of the script, expected ]"},
        {"a = ", "1,5 Syntax error: unexpected the end of the script"},
        {"rollout r \"x\" ()", "1,1 Syntax error: rollout is not supported"},
        {"max quick render", "1,1 Syntax error: max is not supported"},
        {"then", "1,1 Syntax error: unexpected then"},
    });
}

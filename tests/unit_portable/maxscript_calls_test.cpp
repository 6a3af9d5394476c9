// Calls and functions of the script language: how arguments bind, parameters, scopes.
#include "tests/unit_portable/maxscript_bench.h"

using script_bench::Case;
using script_bench::check_cases;
using script_bench::run_cases;

TEST(MaxscriptCalls, ArgumentsBind) {
    run_cases({
        {"fn f a b = a * 10 + b; f 1 2", "12"},
        {"fn f a b = a * 10 + b; f 1 -2", "8"},
        {"fn f a = a; f -1", "-1"},
        {"fn f a = a; f (-1)", "-1"},
        {"f = 5; f - 1", "4"},
        {"f = 5; f-1", "4"},
        {"f = 5; f -1", "1,8 Type error: Call needs function or class, got: 5"},
        {"fn f a = a; f 1 + 2", "3"}, // (f 1) + 2
        {"fn f a = a * 2; f (1 + 2)", "6"},
        {"fn f a = a * 2; f 3 ^ 2", "36"},
        {"fn f a = a; f 5 as string", "\"5\""},
        {"fn f = 7; f()", "7"},
        {"fn f = 7; f ()", "7"},
        {"fn f = 7; f() + f()", "14"},
        {"fn f a = a; f #(1, 2)", "#(1, 2)"},
        {"fn f a = a; x = #(4, 5); f x[2]", "5"},
        {"fn f a = a; x = #(4, 5); f x.count", "2"},
        {"fn f a = a; (f) 3", "3"},
        {"fn g = 1; fn f a = a; f (g())", "1"},
        {"fn f a = a; f (f (f 3))", "3"},
        {"a = #(abs, sqrt); a[1] -3", "3"},
        {"-abs -3", "-3"},
        {"fn f a = a; f not_there:1", "1,13 Argument count error: f wanted 1, got 0"},
        {"fn f a = a; f - 1", "1,15 No \"\"-\"\" function for f()"},
        {"fn f a = a; f\n(3)", "3"}, // two expressions
        {"fn f a = a; f \\\n(3)", "3"},
    });
}

TEST(MaxscriptCalls, WrongForms) {
    run_cases({
        {"fn f a = a; f f()",
         "1,16 Syntax error: unexpected () among arguments; put the inner call in brackets"},
        {"fn f = #(1); f()[1]", "1,17 Syntax error: unexpected [ behind (); put the call in brackets"},
        {"fn f = #(1); f().count", "1,17 Syntax error: unexpected . behind (); put the call in brackets"},
        {"fn f = #(1); (f())[1]", "1"},
        {"fn f a = a; f 1, 2", "1,16 Syntax error: unexpected ,"},
        {"fn f a b = a; f(1, 2)", "1,18 Syntax error: unexpected ,"},
        {"5 6", "1,3 Syntax error: unexpected a number"},
        {"\"a\" \"b\"", "1,5 Syntax error: unexpected a string"},
        {"fn f a = a; f if true then 1", "1,15 Syntax error: unexpected if"},
        {"fn f a = a; f a:", "1,17 Syntax error: unexpected the end of the script"},
        {"abs [1,2,3]", "1,5 Syntax error: points are not supported, and an index follows without a blank"},
        {"fn f a = a; f 1 = 2", "1,17 Syntax error: unexpected ="},
        {"1 = 2", "1,3 Syntax error: unexpected ="},
    });
}

TEST(MaxscriptCalls, Parameters) {
    run_cases({
        {"fn f a b:2 = a + b; f 1", "3"},
        {"fn f a b:2 = a + b; f 1 b:5", "6"},
        {"fn f a b:2 = a + b; f b:5 1", "6"},
        {"fn f b: = b; f()", "unsupplied"},
        {"fn f b: = b == unsupplied; f()", "true"},
        {"fn f a: b:7 = b; f a:1", "7"},
        {"function f a b = a - b; f 5 3", "2"},
        {"fn f &x = (x = 5; x); v = 1; f &v; v", "5"},
        {"fn f &x = (x += 1); fn g &y = (f &y); v = 1; g &v; v", "2"},
        {"fn f &x = (x = 9); a = #(1, 2); f &a[2]; a", "#(1, 9)"},
        {"struct S (m = 1); fn f &x = (x = 9); s1 = S(); f &s1.m; s1.m", "9"},
        {"fn f &x = (x = 9); fn g = (local v = 1; f &v; v); g()", "9"},
        {"fn f x = (x = 9); v = 1; f v; v", "1"},
        {"fn f x = (append x 3); v = #(1); f v; v", "#(1, 3)"},
        {"fn f &x = x; f 4", "4"},
        {"fn f x = x; v = 3; f &v", "3"},
    });
}

TEST(MaxscriptCalls, ReturnAndRecursion) {
    run_cases({
        {"fn f a = (if a then return 1; 2); f true", "1"},
        {"fn f a = (if a then return 1; 2); f false", "2"},
        {"fn f = (for i = 1 to 10 do (if i == 4 do return i); 0); f()", "4"},
        {"fn f = (while true do return 3); f()", "3"},
        {"fn f = (1 + (return 5)); f()", "5"},
        {"fn f = (try (return 5) catch (6)); f()", "5"},
        {"fn f n = if n < 2 then 1 else n * f (n - 1); f 10", "3628800"},
        {"fn f n = if n < 2 then n else (f (n - 1)) + (f (n - 2)); f 15", "610"},
        {"fn f = (local a = #(1, return 2); a); f()", "2"},
        {"return 5", "1,1 Compile error: return outside a function"},
        {"fn f = (); f()", "undefined"},
    });
}

TEST(MaxscriptCalls, Counts) {
    run_cases({
        {"fn f a b = a\nf 1", "2,1 Argument count error: f wanted 2, got 1"},
        {"fn f = 1\n\n  f 1", "3,3 Argument count error: f wanted 0, got 1"},
        {"fn f a = a; g = f; g 1 2", "1,20 Argument count error: f wanted 1, got 2"},
        {"substring \"a\" 1", "1,1 Argument count error: substring wanted 3, got 2"},
        {"abs 1 2", "1,1 Argument count error: abs wanted 1, got 2"},
        {"fn f a = a; f 1 z:3", "1,13 Argument error: f has no keyword parameter z:"},
        {"print 1 z:3", "1,1 Argument error: print has no keyword parameter z:"},
        {"x = 3; x 4", "1,8 Type error: Call needs function or class, got: 3"},
        {"x = undefined; x()", "1,16 Type error: Call needs function or class, got: undefined"},
        {"struct S (fn f a = a); s1 = S(); s1.f 1 2", "1,36 Argument count error: f wanted 1, got 2"},
    });
}

TEST(MaxscriptCalls, Scopes) {
    run_cases({
        {"a = 1; (a = 2); a", "2"}, // a global that exists
        {"(b = 2); try (execute \"b\") catch (#none)", "#none"},
        {"(local a = 1; (local a = 2); a)", "1"},
        {"a = 1; fn f = (local a = 5; a); f(); a", "1"},
        {"a = 1; fn f = (a = 5); f(); a", "5"},
        {"fn f = (global g1 = 5); f(); g1", "5"},
        {"(local x = 3; fn f = x; f())", "3"}, // a local of a top-level block
        {"(local x = 3; fn f = (x += 1); f(); f(); x)", "5"},
        {"global v = 3; (local v = 4; ::v)", "3"},
        {"::w = 3; w", "3"},
        {"global a = 1, b = 2; a + b", "3"},
        {"(local a = 1, b = a + 1; b)", "2"},
        {"(for i = 1 to 3 do (local n; if n == undefined do n = 0; n += 1; if n > 1 do throw \"kept\"); "
         "#new)",
         "#new"},
        {"x = 1; (local x = x + 1; x)", "2"},
        {"fn f = (local a = 1; (local b = 2); local c = 3; #(a, c)); f()", "#(1, 3)"},
        {"fn f p = (for i = 1 to 2 do (local q = i); local r = 5; p + r); f 4", "9"},
        {"persistent global p1 = 4; p1", "4"},
        {"for q = 1 to 2 do q; try (execute \"q\") catch (#none)", "#none"},
    });
}

TEST(MaxscriptCalls, ScopesRefused) {
    run_cases({
        {"fn f = (local x = 1; fn g = x; g())",
         "1,29 Compile error: No outer local variable references permitted here: x"},
        {"fn f x = (fn g = (x = 2))",
         "1,19 Compile error: No outer local variable references permitted here: x"},
        {"local x = 1", "1,1 Compile error: No local declarations at top level"},
        {"print = 3", "1,1 Compile error: Cannot assign to read-only variable: print"},
        {"(local a = 1\n  pi = 3)", "2,3 Compile error: Cannot assign to read-only variable: pi"},
        {"fn abs x = x", "1,4 Compile error: Cannot assign to read-only variable: abs"},
        {"fn f a a = a", "1,8 Syntax error: two parameters have the name a"},
        {"fn f a:1 b = a", "1,10 Syntax error: a positional parameter stands behind one with a keyword"},
        {"fn 5 = 3", "1,4 Syntax error: at a number, expected the function's name"},
        {"fn f a", "1,7 Syntax error: at the end of the script, expected a parameter or ="},
    });
}

TEST(MaxscriptCalls, UndeclaredNames) {
    run_cases({
        {"nobody", "1,1 undeclared name: nobody"},
        {"a = 1\nfn f = (\n  a + nobody)", "3,7 undeclared name: nobody"},
        {"fn f = g()\nfn g = 1", "1,8 undeclared name: g"},
        {"global g\nfn f = g()\nfn g = 1\nf()", "1"}, // declared before
        {"nobody += 1", "1,1 undeclared name: nobody"},
        {"(if true then (n = 1); n)", "1,24 undeclared name: n"}, // local to the inner block
        {"::nobody", "1,3 undeclared name: ::nobody"},
    });
    // The host itself lets them pass, as undefined.
    run_cases({{"nobody", "undefined"}, {"fn f = nobody == undefined; f()", "true"}, {"(n; n = 2; n)", "2"}},
              false);
}

TEST(MaxscriptCalls, ChecksBeforeRunning) {
    check_cases({
        {"a = 1\nprint a", ""},
        {"fn f a b = a\nf 1\nf 1 2\nf()",
         "2,1 Argument count error: f wanted 2, got 1\n4,1 Argument count error: f wanted 2, got 0"},
        {"nobody1\nnobody2", "1,1 undeclared name: nobody1\n2,1 undeclared name: nobody2"},
        {"nobody1\n)", "1,1 undeclared name: nobody1\n2,1 Syntax error: unexpected )"},
        {"fn f a = a\nf = abs\nf 1 2", ""}, // no longer known
        {"throw \"not run\"", ""},
        {"fn f a = a\nfn f a b = if b then f 1 false else a\nf 1 true", ""}, // defined anew
        {"fn f a = f 1 2", "1,10 Argument count error: f wanted 1, got 2"},
        {"struct S (fn f = g 1, fn g a b = a)", "1,18 Argument count error: g wanted 2, got 1"},
        {"struct S (fn f = g 1 2, fn g a b = a)", ""},
    });
}

// Calls and functions of the script language: how arguments bind, parameters, scopes.
#include "tests/standin/maxscript/maxscript_fixture.h"

using script_fixture::check_cases;

TEST(MaxscriptCalls, CheckFindsWrongCountsAndUnknownNames) {
    check_cases({
        {"a = 1\nprint a", ""},
        {"fn f a b = a\nf 1\nf 1 2\nf()",
         "2,1 Argument count error: f wanted 2, got 1\n4,1 Argument count error: f wanted 2, got 0"},
        {"nobody1\nnobody2", "1,1 undeclared name: nobody1\n2,1 undeclared name: nobody2"},
        {"nobody1\n)", "1,1 undeclared name: nobody1\n2,1 Syntax error: unexpected )"},
        {"fn f a = a\nf = mod\nf 1 2", ""}, // its count is unknown then
        {"throw \"not run\"", ""},
        {"fn f a = a\nfn f a b = if b then f 1 false else a\nf 1 true", ""}, // redefined
        {"fn f a = f 1 2", "1,10 Argument count error: f wanted 1, got 2"},
        {"struct S (fn f = g 1, fn g a b = a)", "1,18 Argument count error: g wanted 2, got 1"},
        {"struct S (fn f = g 1 2, fn g a b = a)", ""},
    });
}

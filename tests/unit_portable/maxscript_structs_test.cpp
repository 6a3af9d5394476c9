// Structs of the script language: members, functions, creation, access from outside.
#include "tests/unit_portable/maxscript_bench.h"

using script_bench::Case;
using script_bench::check_cases;
using script_bench::run_cases;

TEST(MaxscriptStructs, Construction) {
    run_cases({
        {"struct S (a, b = 2); S()", "(S a:undefined b:2)"},
        {"struct S (a, b = 2); S a:1", "(S a:1 b:2)"},
        {"struct S (a, b = 2); S 5", "(S a:5 b:2)"},
        {"struct S (a, b = 2); S 5 b:6", "(S a:5 b:6)"},
        {"struct S\n(\n  a = 1,\n  b = \"x\"\n)\nS()", "(S a:1 b:\"x\")"},
        {"struct S (a = #()); x = S(); y = S(); append x.a 1; y.a.count", "0"},
        {"struct S (a = 1); x = S(); x.a = 5; x.a", "5"},
        {"struct S (a = 1); x = S(); x.a += 5; x.a", "6"},
        {"struct S (a = 1); x = S(); x.A", "1"},
        {"struct S (a = 1, b = a + 1); (S()).b", "2"},
        {"struct S (a = 1, b = a + 1); (S a:5).b", "6"},
        {"struct S (a); classOf (S()) == S", "true"},
        {"struct S (a); isStruct (S())", "true"},
        {"struct S (a); isStructDef S", "true"},
        {"struct S (a); isKindOf (S()) S", "true"},
        {"struct S (a); x = S(); struct S (b); (classOf x) == S", "false"}, // defined anew
        {"struct S (a); x = S(); y = x; y.a = 3; x.a", "3"},
        {"struct S (a); x = S a:1; y = copy x; y.a = 3; x.a", "1"},
        {"struct S (a, fn f = 1)", "#Struct:S(\n  a:<data>; Public,\n  f:<fn>; Public)"},
    });
}

TEST(MaxscriptStructs, Functions) {
    run_cases({
        {"struct S (a = 3, fn f x = a + x); s1 = S(); s1.f 2", "5"},
        {"struct S (a = 3, fn f = (a += 1)); s1 = S(); s1.f(); s1.f(); s1.a", "5"},
        {"struct S (fn f = g(), fn g = 4); (S()).f()", "4"}, // a member behind its use
        {"struct S (fn f n = if n == 0 then 0 else 1 + (f (n - 1))); (S()).f 5", "5"},
        {"struct S (fn f x = x * 2); S.f 4", "8"},
        {"struct S (a = 1, fn f = this.a); (S()).f()", "1"},
        {"struct S (a = 1, fn f = this); ((S a:7).f()).a", "7"},
        {"struct S (a = 1, fn f a = a); (S()).f 9", "9"}, // a parameter hides the member
        {"struct S (a = 1, fn f = (local a = 2; a)); (S()).f()", "2"},
        {"struct S (foo = 2, fn onCreate = (foo += 1; foo + 3), a = onCreate()); S()", "(S foo:3 a:6)"},
        {"struct S (a = 1, fn f = a); s1 = S(); g = s1.f; s1.a = 8; g()", "8"},
        {"struct S (a = 1, fn f k:2 = a + k); (S()).f k:5", "6"},
        {"struct T (v = 1, fn get = v); struct S (part = T v:9, fn f = part.get()); (S()).f()", "9"},
        {"struct S (a = 1, fn f = (fn inner x = x + 1; inner a)); (S()).f()", "2"},
        {"struct S (a = 0, fn one = (a += 1; this), fn two = (one(); one(); a)); (S()).two()", "2"},
        {"struct S (fn f = (for i = 1 to 3 collect (g i)), fn g n = n * n); (S()).f()", "#(1, 4, 9)"},
        {"struct S (fn f = (try (throw \"x\") catch (#saved))); (S()).f()", "#saved"},
    });
}

TEST(MaxscriptStructs, Handlers) {
    run_cases({
        {"struct S (a = 1, on create do a = 5); (S()).a", "5"},
        {"struct S (a = 1, on create do (a = a * 3)); (S a:4).a", "12"},
        {"struct S (on create do this.a = 2, a = 1); (S()).a", "2"},
        {"n = 0; struct S (a, on create do n += 1); S(); S(); n", "2"},
        {"struct S (a, on clone do print 1); S()", "(S a:undefined)"},
        {"struct S (a, on delete do 1)", "1,17 Syntax error: at delete, expected create or clone"},
    });
}

TEST(MaxscriptStructs, PrivateMembers) {
    run_cases({
        {"struct S (a = 1, private b = 2, fn f = b, public fn g = f()); (S()).g()", "2"},
        {"struct S (a, private b = 2); s1 = S()\ns1.b",
         "2,3 Runtime error: Attempting to access private member: \"b\" in: #Struct:S"},
        {"struct S (private b = 2); s1 = S(); s1.b = 3",
         "1,39 Runtime error: Attempting to access private member: \"b\" in: #Struct:S"},
        {"struct S (private fn f = 2); (S()).f()",
         "1,35 Runtime error: Attempting to access private member: \"f\" in: #Struct:S"},
        {"struct S (private b = 2); S b:3",
         "1,27 Runtime error: Attempting to access private member: \"b\" in: #Struct:S"},
        {"struct S (a = 1, private b = 2); S()", "(S a:1)"},
        {"struct S (private b = 2, public fn same other = other.b == b); (S()).same (S())", "true"},
        {"struct S (public a, private b, c, public d); getPropNames S", "#(#a, #d)"},
        {"struct S (private b = 2); isProperty (S()) #b", "false"},
    });
}

TEST(MaxscriptStructs, Refused) {
    run_cases({
        {"struct S (a, b,)", "1,16 Syntax error: a comma before the struct's )"},
        {"struct S\n(\n  a = 1,\n  fn f = 2,\n)", "5,1 Syntax error: a comma before the struct's )"},
        {"struct S ()", "1,11 Syntax error: a struct without members"},
        {"struct S (a b)", "1,13 Syntax error: at b, expected ,"},
        {"struct S (a, A)", "1,14 Compile error: the struct has two members A"},
        {"struct S (a = 1, fn a = 2)", "1,21 Compile error: the struct has two members a"},
        {"struct S (fn f = 1\n fn g = 2)", "2,2 Syntax error: at fn, expected ,"},
        {"struct (a)", "1,8 Syntax error: at (, expected the struct's name"},
        {"struct S a", "1,10 Syntax error: at a, expected ("},
        {"struct S (a", "1,12 Syntax error: at the end of the script, expected ,"},
        {"struct S (5)", "1,11 Syntax error: at a number, expected a member"},
        {"struct S (fn f = (f = 3))", "1,19 Compile error: Cannot assign to read-only variable: f"},
        {"struct S (a); (S()).nothing", "1,20 Unknown property: \"nothing\" in (S a:undefined)"},
        {"struct S (a); x = S(); x.b = 2", "1,25 Unknown property: \"b\" in (S a:undefined)"},
        {"struct S (a); S 1 2", "1,15 Argument count error: S wanted 1, got 2"},
        {"struct S (a); S z:2", "1,15 Unknown property: \"z\" in #Struct:S"},
        {"struct S (a = 1, fn f = a); S.f()",
         "1,25 Runtime error: a struct's member is used without an instance"},
        {"struct S (a = 1); S.a", "1,20 Runtime error: a struct's member is used without an instance"},
        {"struct S (fn f = 1); x = S(); x.f = 2", "1,32 Runtime error: Cannot assign to the function f"},
        {"struct S (fn f = nobody)", "1,18 undeclared name: nobody"},
    });
}

TEST(MaxscriptStructs, PropertiesByName) {
    run_cases({
        {"struct S (a = 4, fn f = 1); getProperty (S()) #a", "4"},
        {"struct S (a = 4); getProperty (S()) \"a\"", "4"},
        {"struct S (a = 4); x = S(); setProperty x #a 6; x.a", "6"},
        {"struct S (a = 4, fn f = 1); #(isProperty (S()) #a, isProperty (S()) #zz)", "#(true, false)"},
        {"struct S (a = 4); hasProperty (S()) \"a\"", "true"},
        {"struct S (a, fn f = 1); getPropNames (S())", "#(#a, #f)"},
        {"isProperty #(1) #count", "true"},
        {"isProperty undefined #count", "false"},
        {"getProperty undefined #a", "1,1 Unknown property: \"a\" in undefined"},
        {"undefined.a", "1,10 Unknown property: \"a\" in undefined"},
        {"undefined.a = 2", "1,10 Unknown property: \"a\" in undefined"},
    });
}

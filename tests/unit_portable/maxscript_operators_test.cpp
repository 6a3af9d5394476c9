// Operators of the script language: ranks, kinds of numbers, comparison, conversion.
#include "tests/unit_portable/maxscript_bench.h"

using script_bench::Case;
using script_bench::run_cases;

TEST(MaxscriptOperators, Ranks) {
    run_cases({
        {"2 + 3 * 4", "14"},
        {"(2 + 3) * 4", "20"},
        {"10 - 3 - 2", "5"},
        {"24 / 4 / 2", "3"},
        {"2 ^ 3 ^ 2", "512"}, // to the right
        {"2 * 3 ^ 2", "18"},
        {"-2 ^ 2", "4"}, // a minus makes an operand
        {"1 + 2 as string", "1,3 Unable to convert: \"2\" to type: Integer"},
        {"(1 + 2) as string", "\"3\""},
        {"2 as string + \"x\"", "\"2x\""},
        {"2 ^ 2 as float", "4"},
        {"1 + 1 == 2", "true"},
        {"not 1 == 2", "true"},
        {"not true and false", "false"},
        {"not (true and false)", "true"},
        {"not not true", "true"},
        {"true or false and false", "true"},
        {"false and true or true", "true"},
        {"1 < 2 and 2 < 3", "true"},
        {"1 == 1 or undefined", "true"}, // the rest is not looked at
        {"1 == 2 and undefined", "false"},
        {"\"12\" as integer as string", "\"12\""},
    });
}

TEST(MaxscriptOperators, Arithmetic) {
    run_cases({
        {"7 / 2", "3"},
        {"-7 / 2", "-3"},
        {"7 / 2.0", "3.5"},
        {"1 + 1.5", "2.5"},
        {"2 * 1.0", "2.0"},
        {"2147483647 + 1", "-2147483648"}, // wraps round
        {"-2147483648 - 1", "2147483647"},
        {"65536 * 65536", "0"},
        {"65536L * 65536", "4294967296L"},
        {"-2147483648 / -1", "-2147483648"},
        {"(-9223372036854775807L - 1) / -1", "-9223372036854775808L"},
        {"9223372036854775807L + 1", "-9223372036854775808L"},
        {"2 ^ 10", "1024"},
        {"2 ^ -1", "0"}, // the first number decides
        {"2 ^ 0.5", "1"},
        {"2.0 ^ 0.5", "1.41421"},
        {"4.0 ^ 0.5", "2.0"},
        {"- (2 + 3)", "-5"},
        {"-(-3)", "3"},
        {"a = 3; -a", "-3"},
        {"5 - -3", "8"},
        {"1.0 / 0", "inf"},
        {"-1.0 / 0", "-inf"},
        {"mod 7 3", "1.0"},
        {"mod -7 3", "-1.0"},
        {"abs -3", "3"},
        {"abs -3.5", "3.5"},
        {"floor 2.7", "2.0"},
        {"ceil 2.1", "3.0"},
        {"sqrt 16", "4.0"},
        {"sin 90", "1.0"},
        {"pow 2 3", "8.0"},
        {"pi", "3.14159"},
    });
}

TEST(MaxscriptOperators, Assignments) {
    run_cases({
        {"a = 5", "5"},
        {"a = b = 3; a + b", "6"},
        {"a = 5; a += 2; a", "7"},
        {"a = 5; a -= 2", "3"},
        {"a = 5; a *= 2", "10"},
        {"a = 5; a /= 2", "2"},
        {"a = \"x\"; b = a; a += \"y\"; b", "\"x\""},
        {"a = #(1, 2); a[2] += 5; a", "#(1, 7)"},
        {"a = #(); a[3] = 1; a", "#(undefined, undefined, 1)"},
        {"x = if true then 1 else 2", "1"},
    });
}

TEST(MaxscriptOperators, Comparison) {
    run_cases({
        {"1 == 1.0", "true"},
        {"1 != 2", "true"},
        {"2 >= 2", "true"},
        {"2 <= 1", "false"},
        {"\"abc\" == \"abc\"", "true"},
        {"\"abc\" == \"ABC\"", "false"}, // with regard to case
        {"\"abc\" != \"ABC\"", "true"},
        {"\"a\" < \"b\"", "true"},
        {"\"B\" < \"a\"", "true"},
        {"stricmp \"abc\" \"ABC\"", "0"},
        {"stricmp \"a\" \"b\"", "-1"},
        {"stricmp \"b\" \"A\"", "1"},
        {"\"a\" == #a", "false"},
        {"undefined == undefined", "true"},
        {"undefined == 0", "false"},
        {"undefined != \"\"", "true"},
        {"#(1) == #(1)", "false"}, // two arrays
        {"a = #(1); b = a; a == b", "true"},
        {"true == on", "true"},
        {"1 == \"1\"", "false"},
        {"5L == 5", "true"},
        {"#{1..3} == #{1, 2, 3}", "true"},
    });
}

TEST(MaxscriptOperators, WrongKinds) {
    run_cases({
        {"\"a\" + 5", "1,5 Unable to convert: 5 to type: String"},
        {"5 + \"a\"", "1,3 Unable to convert: \"a\" to type: Integer"},
        {"undefined + 1", "1,11 No \"\"+\"\" function for undefined"},
        {"true + 1", "1,6 No \"\"+\"\" function for true"},
        {"1 / 0", "1,3 Runtime error: Integer divide by zero"},
        {"- \"a\"", "1,1 No \"\"-\"\" function for \"a\""},
        {"not 1", "1,1 No \"\"not\"\" function for 1"},
        {"1 and true", "1,1 Unable to convert: 1 to type: Boolean"},
        {"true and\n  2", "2,3 Unable to convert: 2 to type: Boolean"},
        {"undefined < 1", "1,11 No \"\"<\"\" function for undefined"},
        {"1 < undefined", "1,3 Unable to convert: undefined to type: Integer"},
        {"#(1) < #(2)", "1,6 No \"\"<\"\" function for #(1)"},
        {"1 < 2 < 3", "1,7 Syntax error: unexpected <"},
        {"#(1) + 2", "1,6 Unable to convert: 2 to type: Array"},
        {"#a + #b", "1,4 No \"\"+\"\" function for #a"},
    });
}

TEST(MaxscriptOperators, Conversions) {
    run_cases({
        {"5 as float", "5.0"},
        {"5.9 as integer", "5"},
        {"-5.9 as integer", "-5"},
        {"5 as string", "\"5\""},
        {"5.0 as string", "\"5.0\""},
        {"5L as string", "\"5L\""},
        {"undefined as string", "\"undefined\""},
        {"true as string", "\"true\""},
        {"#abc as string", "\"abc\""},
        {"\"abc\" as name", "#abc"},
        {"\"12\" as integer", "12"},
        {"\"12.7\" as integer", "12"},
        {"\" 12\" as integer", "12"},
        {"\"-3\" as integer", "-3"},
        {"\"abc\" as integer", "undefined"},
        {"\"\" as integer", "undefined"},
        {"\"1.5\" as float", "1.5"},
        {"\"x\" as float", "undefined"},
        {"\"5\" as number", "5"},
        {"\"5.5\" as number", "5.5"},
        {"#(1, \"a\", #b) as string", "\"#(1, \"a\", #b)\""},
        {"10f as integer", "1600"},
        {"10 as time", "10f"},
        {"#{1..3, 7} as array", "#(1, 2, 3, 7)"},
        {"#(1, 2, 5) as bitArray", "#{1..2, 5}"},
        {"undefined as integer", "1,11 Unable to convert: undefined to type: Integer"},
        {"5 as 6", "1,3 Type error: as needs a class, got: 6"},
        {"5 as name", "1,3 Unable to convert: 5 to type: Name"},
        {"(stringStream \"ab\") as string", "\"ab\""},
        {"integer as string", "\"Integer\""},
    });
}

TEST(MaxscriptOperators, Classes) {
    run_cases({
        {"classOf 1", "Integer"},
        {"classOf 1.0", "Float"},
        {"classOf 1L", "Integer64"},
        {"classOf \"\"", "String"},
        {"classOf #a", "Name"},
        {"classOf #()", "Array"},
        {"classOf #{}", "BitArray"},
        {"classOf true", "BooleanClass"},
        {"classOf undefined", "UndefinedClass"},
        {"classOf 1f", "Time"},
        {"classOf (stringStream \"\")", "StringStream"},
        {"fn f = 1; classOf f", "MAXScriptFunction"},
        {"superClassOf 1", "Number"},
        {"superClassOf \"\"", "Value"},
        {"isKindOf 1 Number", "true"},
        {"isKindOf 1 String", "false"},
        {"isKindOf \"\" String", "true"},
        {"(classOf 1) == Integer", "true"},
        {"isKindOf undefined Value", "true"},
    });
}

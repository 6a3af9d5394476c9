// The words of the script language: numbers, strings, names, comments, ends of lines.
#include "tests/unit_portable/maxscript_bench.h"

using script_bench::Case;
using script_bench::run_cases;

TEST(MaxscriptWords, Numbers) {
    run_cases({
        {"123", "123"},
        {"-5", "-5"},
        {"0x1F", "31"},
        {"0xFFFFFFFF", "-1"},
        {"1.5", "1.5"},
        {".25", "0.25"},
        {"3.", "3.0"},
        {"1e3", "1000.0"},
        {"1.5e-2", "0.015"},
        {"2147483647", "2147483647"},
        {"-2147483648", "-2147483648"},
        {"5L", "5L"},
        {"9223372036854775807L", "9223372036854775807L"},
        {"0.1", "0.1"},
        {"1234567.0", "1.23457e+06"},
        {"123456.0", "123456.0"},
        {"0.0001", "0.0001"},
        {"0.00001", "1e-05"},
        {"-0.5", "-0.5"},
        {"007", "7"},
    });
}

TEST(MaxscriptWords, Times) {
    run_cases({
        {"10f", "10f"},
        {"1s", "30f"},
        {"1m20s", "2400f"},
        {"160t", "1f"},
        {"2.5f", "2.5f"},
        {"(10f).frame", "10.0"},
        {"(10f).ticks", "1600"},
        {"10f + 5", "15f"},
        {"10f + 5f", "15f"},
        {"10f - 15", "-5f"},
        {"10f * 2", "20f"},
        {"10f / 5f", "2.0"},
        {"10f / 5", "2f"},
        {"10f < 11f", "true"},
        {"30f == 1s", "true"},
    });
}

TEST(MaxscriptWords, WrongNumbers) {
    run_cases({
        {"2147483648",
         "1,1 Syntax error: the number does not fit into an Integer (an Integer64 ends with L)"},
        {"1\n 99999999999",
         "2,2 Syntax error: the number does not fit into an Integer (an Integer64 ends with L)"},
        {"0x123456789", "1,1 Syntax error: the number does not fit into an Integer"},
        {"99999999999999999999L", "1,1 Syntax error: the number does not fit into an Integer64"},
        {"1.0d3", "1,1 Syntax error: numbers of class Double are not supported"},
        {"12abc", "1,1 Syntax error: a name cannot begin with a digit"},
        {"1s20", "1,1 Syntax error: a time needs a unit behind each number"},
    });
}

TEST(MaxscriptWords, Strings) {
    run_cases({
        {R"("abc")", "\"abc\""},
        {R"("")", "\"\""},
        {R"("a\"b")", "\"a\"b\""},
        {R"("a\nb")", "\"a\nb\""},
        {R"("a\tb\r")", "\"a\tb\r\""},
        {R"("a\\b")", "\"a\\b\""},
        {R"("\*\?\%")", "\"*?%\""},
        {R"("\q")", "\"\\q\""}, // before anything else a backslash is itself
        {R"("C:\dir")", "\"C:\\dir\""},
        {R"("\x41")", "\"A\""},
        {R"("\x41g")", "\"Ag\""},
        {R"(bit.charAsInt "\x0041")", "65"},
        {R"(bit.charAsInt "\x4e2d")", "20013"},
        {R"("\x41b".count)", "1"}, // as many digits as there are
        {R"("\xg")", "\"\\xg\""},
        {"\"a\nb\"", "\"a\nb\""}, // over several lines
        {"\"a\r\nb\".count", "3"},
        {R"(@"C:\new\x41")", "\"C:\\new\\x41\""},
        {R"(@"\")", "\"\\\""},
        {R"(@"".count)", "0"},
    });
}

TEST(MaxscriptWords, NamesHaveNoCase) {
    run_cases({
        {"Abc = 1; aBC", "1"},
        {"#Abc", "#Abc"},
        {"#abc == #ABC", "true"},
        {"#'two words'", "#two words"},
        {"'odd name' = 4; 'ODD name'", "4"},
        {"'for' = 2; 'for'", "2"},
        {"_a1 = 3; _A1", "3"},
        {"PRINT == print", "true"},
        {"IF TRUE THEN 1 ELSE 2", "1"},
    });
}

TEST(MaxscriptWords, CommentsAndLines) {
    run_cases({
        {"1 -- 2", "1"},
        {"/* 1 */ 2", "2"},
        {"1 /* over\nlines */ + 1", "2"},
        {"-- only a comment", "undefined"},
        {"", "undefined"},
        {"1; 2; 3", "3"},
        {"1\n2\n", "2"},
        {"1 \\\n+ 2", "3"},
        {"1 + \\  \r\n2", "3"},
        {"1 +\n2", "3"},
        {"true and\nfalse", "false"},
        {"#(1,\n2\n,3\n)", "#(1, 2, 3)"},
        {"x =\n\n5", "5"},
        {"(\n1\n;;\n2\n)", "2"},
        {"if true\nthen 1\nelse 2", "1"},
        {"1\n-2", "-2"}, // a line is not continued by the operator that begins the next
        {"1--2\n", "1"},
    });
}

TEST(MaxscriptWords, WrongWordsHavePlaces) {
    run_cases({
        {"\"abc", "1,1 Syntax error: unterminated string"},
        {"a = 1\nb = \"abc\n\n", "2,5 Syntax error: unterminated string"},
        {"1\n  /* abc", "2,3 Syntax error: unterminated comment"},
        {"#'abc", "1,1 Syntax error: unterminated name in quotes"},
        {"a = `", "1,5 Syntax error: a character that means nothing here"},
        {"a = 1 \\ 2", "1,7 Syntax error: a character that means nothing here"},
    });
}

TEST(MaxscriptWords, UnitsOutsideAscii) {
    run_cases({
        {"\"\xD0\x96\".count", "1"},
        {"\"\xF0\x9F\x98\x80\".count", "2"}, // two units
        {"toLower \"\xD0\x96\"", "\"\xD0\xB6\""},
        {"toUpper \"\xC3\xA9\"", "\"\xC3\x89\""},
    });
}

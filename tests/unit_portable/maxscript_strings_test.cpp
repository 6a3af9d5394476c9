// Strings of the script language and their functions.
#include "tests/unit_portable/maxscript_bench.h"

using script_bench::Case;
using script_bench::run_cases;

TEST(MaxscriptStrings, Pieces) {
    run_cases({
        {"substring \"abcdef\" 2 3", "\"bcd\""},
        {"substring \"abcdef\" 2 -1", "\"bcdef\""},
        {"substring \"abcdef\" 5 10", "\"ef\""},
        {"substring \"abc\" 4 1", "\"\""},
        {"substring \"abc\" 2 0", "\"\""},
        {"substring \"abc\" 0 1", "1,1 Runtime error: substring start must be 1 or more, got: 0"},
        {"\"abc\"[2]", "\"b\""},
        {"\"abc\".count", "3"},
        {"\"abc\"[4]", "1,6 Runtime error: string index out of range: 4"},
        {"\"abc\"[0]", "1,6 Runtime error: array index must be +ve number, got: 0"},
        {"s1 = \"abc\"; s1[2] = \"X\"; s1", "\"aXc\""},
        {"s1 = \"abc\"; s1[2] = \"XY\"",
         "1,15 Runtime error: a character of a string needs a string of one character, got: \"XY\""},
        {"findString \"hello\" \"l\"", "3"},
        {"findString \"hello\" \"L\"", "undefined"},
        {"findString \"hello\" \"lo\"", "4"},
        {"replace \"abcdef\" 2 3 \"X\"", "\"aXef\""},
        {"s1 = \"abc\"; replace s1 1 1 \"X\"; s1", "\"abc\""},
        {"replace \"abc\" 9 1 \"\"", "1,1 Runtime error: replace is out of the string's range: 9"},
    });
}

TEST(MaxscriptStrings, Changes) {
    run_cases({
        {"toLower \"AbC1\"", "\"abc1\""},
        {"toUpper \"aBc1\"", "\"ABC1\""},
        {"trimLeft \"  a \"", "\"a \""},
        {"trimRight \" a \\t\\n\"", "\" a\""},
        {"trimLeft (trimRight \"  a  \")", "\"a\""},
        {"trimLeft \"xxa\" \"x\"", "\"a\""},
        {"trimRight \"   \"", "\"\""},
        {"substituteString \"a.b.c\" \".\" \"--\"", "\"a--b--c\""},
        {"substituteString \"aaa\" \"aa\" \"b\"", "\"ba\""},
        {"substituteString \"abc\" \"x\" \"y\"", "\"abc\""},
        {"substituteString \"a\\\\b\" \"\\\\\" \"\\\\\\\\\"", "\"a\\\\b\""},
        {"substituteString \"abc\" \"\" \"y\"", "\"abc\""},
        {"\"a\" + \"b\" + \"c\"", "\"abc\""},
        {"s1 = \"a\"; append s1 \"b\"; s1", "\"ab\""},
        {"fn f = \"a\"; append (f()) \"b\"; f()", "\"ab\""}, // the literal itself has changed
        {"fn f = copy \"a\"; append (f()) \"b\"; f()", "\"a\""},
        {"s1 = \"abc\"; free s1; s1", "\"\""},
        {"bit.charAsInt \"A\"", "65"},
        {"bit.intAsChar 66", "\"B\""},
        {"bit.intAsChar 0x4e2d == \"\\x4e2d\"", "true"},
        {"bit.charAsInt \"\"", "1,4 Runtime error: charAsInt needs a character"},
        {"bit.intAsChar 65536", "1,4 Runtime error: intAsChar needs a number from 0 to 65535, got: 65536"},
        {"toLower 5", "1,1 Unable to convert: 5 to type: String"},
    });
}

TEST(MaxscriptStrings, Patterns) {
    run_cases({
        {"matchPattern \"hello\" pattern:\"h*\"", "true"},
        {"matchPattern \"hello\" pattern:\"H*O\"", "true"},
        {"matchPattern \"hello\" pattern:\"H*\" ignoreCase:false", "false"},
        {"matchPattern \"hello\" pattern:\"h?llo\"", "true"},
        {"matchPattern \"hello\" pattern:\"h?lo\"", "false"},
        {"matchPattern \"hello\" pattern:\"*l*l*\"", "true"},
        {"matchPattern \"hello\" pattern:\"hello\"", "true"},
        {"matchPattern \"hello\" pattern:\"\"", "false"},
        {"matchPattern \"\" pattern:\"*\"", "true"},
        {"matchPattern \"a\" pattern:\"a**\"", "true"},
        {"matchPattern \"abab\" pattern:\"*ab\"", "true"},
        {"filterString \"a,b;c\" \",;\"", "#(\"a\", \"b\", \"c\")"},
        {"filterString \",a,,b\" \",\"", "#(\"a\", \"b\")"},
        {"filterString \",a,,b\" \",\" splitEmptyTokens:true", "#(\"\", \"a\", \"\", \"b\")"},
        {"filterString \"\" \",\"", "#()"},
        {"filterString \"abc\" \",\"", "#(\"abc\")"},
    });
}

TEST(MaxscriptStrings, Formats) {
    run_cases({
        {"formattedPrint 5 format:\"03d\"", "\"005\""},
        {"formattedPrint 3.14159 format:\".2f\"", "\"3.14\""},
        {"formattedPrint 255 format:\"x\"", "\"ff\""},
        {"formattedPrint 255 format:\"s\"", "1,1 Runtime error: the format is not supported: s"},
        {"ss = stringStream \"\"; format \"%-%\" 1 \"b\" to:ss; ss as string", "\"1-b\""},
        {"ss = stringStream \"\"; format \"%\" #(1, \"a\") to:ss; ss as string", "\"#(1, \"a\")\""},
        {"ss = stringStream \"\"; format \"50\\\\%\" to:ss; ss as string", "\"50%\""},
        {"ss = stringStream \"\"; format \"%\" \"100%\" to:ss; ss as string", "\"100%\""},
        {"format \"% %\" 1", "1,1 Runtime error: format has more % than values"},
        {"ss = stringStream \"\"; print \"a\" to:ss; print 5 to:ss; ss as string", "\"\"a\"\n5\n\""},
        {"local_fmt = \"%;\"; ss = stringStream \"\"; for i = 1 to 3 do format local_fmt i to:ss; ss as "
         "string",
         "\"1;2;3;\""},
        {"format \"x\" to:5", "1,1 Unable to convert: 5 to type: Stream"},
        {"ss = stringStream \"ab\"; ss", "StringStream:\"ab\""},
    });
}

TEST(MaxscriptStrings, DataInFormatStringsIsRefused) {
    run_cases({
        {"x = \"a\" + \"b\"; format x", "1,23 data inside a format string; write format \"%\" value"},
        {"format (\"a\" + \"b\")", "1,8 data inside a format string; write format \"%\" value"},
        {"fn f s1 = format s1", "1,18 data inside a format string; write format \"%\" value"},
        {"fn f s1 = format \"%\" s1; 1", "1"},
        {"(local f1 = \"%\"; ss = stringStream \"\"; format f1 2 to:ss; f1 = 5 as string)",
         "1,59 data inside a format string: f1 is used as one"},
        {"x = \"a\"; x = toLower x; x = \"b\"; format x",
         "1,41 data inside a format string; write format \"%\" value"},
    });
    run_cases({{"ss = stringStream \"\"; x = \"a\" + \"b\"; format x to:ss; ss as string", "\"ab\""}}, false);
}

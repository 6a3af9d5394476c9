// Whole programs: files, streams, output, limits.
#include "tests/standin/maxscript/maxscript_fixture.h"
#include "tests/support/memory_files.h"

using script_fixture::check_outcome;
using script_fixture::outcome_of;
using script_fixture::text;
using namespace maxscript;

namespace {

class MaxscriptPrograms : public testing::Test {
protected:
    MaxscriptPrograms() {
        environment_.files = &files_;
        environment_.listener = &listener_;
    }

    std::string run(const std::string& source) {
        Interpreter interpreter(environment_);
        return outcome_of(interpreter, source);
    }
    void set_file(const char* path, const std::string& bytes) { files_.put(text(path), bytes); }
    std::string file(const char* path) { return files_.find(text(path))->bytes; }

    support::MemoryFiles files_;
    script_fixture::Listener listener_;
    Environment environment_;
};

TEST_F(MaxscriptPrograms, PrintAndFormatWriteIntoTheListener) {
    run("print \"a\"\nprint #(1, #b)\nformat \"%/%\\n\" 1 \"x\"");
    EXPECT_EQ(listener_.output, "\"a\"\n#(1, #b)\n1/x\n");
}

TEST_F(MaxscriptPrograms, FileInRunsInGlobalScope) {
    set_file("C:\\a.ms", "struct S (fn twice x = x * 2)\nglobal g1 = S()\n#done");
    EXPECT_EQ(run("fileIn \"C:\\a.ms\"\ng1.twice 4"), "8");
    EXPECT_EQ(run("fileIn @\"c:\\A.MS\""), "#done");
    EXPECT_EQ(run("(fileIn \"C:\\a.ms\")\nexecute \"g1.twice 5\""), "10");
    EXPECT_EQ(run("filein @\"C:\\none.ms\""), "1,1 Runtime error: fileIn can't open file: C:\\none.ms");
}

TEST_F(MaxscriptPrograms, FileInStopsAtTheFirstError) {
    set_file("a.ms", "x1 = 1\nx2 = 2\n  x3 = (\nx4 = \"open");
    Interpreter interpreter(environment_);
    try {
        interpreter.run(u"fileIn \"a.ms\"", u"start");
        FAIL() << "no error";
    } catch (const ScriptError& error) {
        EXPECT_EQ(error.line(), 4);
        EXPECT_EQ(error.column(), 6);
        EXPECT_EQ(error.kind(), ErrorKind::syntax);
        EXPECT_STREQ(error.what(), "a.ms(4,6): Syntax error: unterminated string");
    }
    Value value;
    EXPECT_TRUE(interpreter.globals().get(u"x2", value));
    EXPECT_EQ(interpreter.printed(value), u"2");
    EXPECT_FALSE(interpreter.globals().get(u"x3", value) && !value.is(Kind::undefined));
}

TEST_F(MaxscriptPrograms, ErrorsNameTheFileOfTheirLine) {
    set_file("lib.ms", "fn broken = (\n  undefined.x\n)");
    Interpreter interpreter(environment_);
    try {
        interpreter.run(u"fileIn \"lib.ms\"\nbroken()", u"main");
        FAIL() << "no error";
    } catch (const ScriptError& error) {
        EXPECT_STREQ(error.what(), "lib.ms(2,12): Unknown property: \"x\" in undefined");
    }
}

TEST_F(MaxscriptPrograms, NonAsciiBytesAreRefused) {
    set_file("a.ms", "x = 1\ny = \"\xC3\xA9\"");
    EXPECT_EQ(run("fileIn \"a.ms\""), "2,6 a byte that is not ASCII");
    set_file("b.ms", "\xEF\xBB\xBFx = 1"); // a byte order mark is allowed
    EXPECT_EQ(run("fileIn \"b.ms\""), "1");
    EXPECT_EQ(check_outcome("x = 1\n  -- \xE4"), "2,6 a byte that is not ASCII");
}

TEST_F(MaxscriptPrograms, NewerFeaturesAreRefused) {
    EXPECT_EQ(check_outcome("executeScriptFile \"a\""), "1,1 executeScriptFile is newer than the host");
    Interpreter interpreter(environment_);
    auto callbacks = std::make_shared<HostInterface>(u"callbacks");
    callbacks->add(u"show", 0, 0, {u"asArray", u"id"}, [](Arguments&) { return Value::ok(); });
    interpreter.globals().add_constant(u"callbacks", Value::object(callbacks));
    EXPECT_EQ(outcome_of(interpreter, "callbacks.show id:#a"), "OK");
    EXPECT_EQ(outcome_of(interpreter, "callbacks.show asArray:true"), "1,10 asArray: is newer than the host");
}

TEST_F(MaxscriptPrograms, StreamsReadLinesAndWriteText) {
    set_file("in.txt", "one\r\ntwo\r\n\r\nlast");
    EXPECT_EQ(run("f = openFile \"in.txt\"; a = #(); while not eof f do append a (readLine f); close f; a"),
              "#(\"one\", \"two\", \"\", \"last\")");
    EXPECT_EQ(run("openFile \"none.txt\""), "undefined");
    EXPECT_EQ(run("f = createFile \"out.txt\"; format \"%\\n\" 5 to:f; print \"a\" to:f; close f"), "OK");
    EXPECT_EQ(file("out.txt"), "5\r\n\"a\"\r\n");
    EXPECT_EQ(run("f = createFile \"out.txt\"; format \"x\" to:f; f = 0"), "0"); // written without close
    EXPECT_EQ(file("out.txt"), "x");
    EXPECT_EQ(run("f = openFile \"in.txt\"; format \"x\" to:f"),
              "1,24 Runtime error: the file is not open for writing: in.txt");
    EXPECT_EQ(run("f = openFile \"in.txt\"; close f; readLine f"),
              "1,33 Runtime error: the file is not open for reading: in.txt");
    EXPECT_EQ(run("f = openFile \"in.txt\"; while true do readLine f"),
              "1,38 Runtime error: Read past end of file");
    EXPECT_EQ(run("openFile \"in.txt\" mode:\"w\""),
              "1,1 Runtime error: openFile takes only mode:\"r\" and \"rt\" here");
}

TEST_F(MaxscriptPrograms, FilesAreDecodedByMarkAsUtf8OrByteByByte) {
    const char* const read = "f = openFile \"in.txt\"; l = readLine f; #(l.count, bit.charAsInt l)";
    set_file("in.txt", std::string("\xFF\xFE\x2D\x4E", 4));
    EXPECT_EQ(run(read), "#(1, 20013)");
    set_file("in.txt", std::string("\xFE\xFF\x4E\x2D", 4));
    EXPECT_EQ(run(read), "#(1, 20013)");
    set_file("in.txt", "\xEF\xBB\xBF\xE4\xB8\xAD");
    EXPECT_EQ(run(read), "#(1, 20013)");
    set_file("in.txt", "\xE4\xB8\xAD");
    EXPECT_EQ(run(read), "#(1, 20013)");
    set_file("in.txt", "\xE4\xB8"); // no UTF-8
    EXPECT_EQ(run(read), "#(2, 228)");
}

TEST_F(MaxscriptPrograms, FilesAndPartsOfTheirNames) {
    set_file("C:\\dir\\a.b.txt", "x");
    EXPECT_EQ(run("doesFileExist @\"C:\\DIR\\a.b.txt\""), "true");
    EXPECT_EQ(run("doesFileExist \"\""), "false");
    EXPECT_EQ(run("getFilenamePath @\"C:\\dir\\a.b.txt\""), "\"C:\\dir\\\"");
    EXPECT_EQ(run("getFilenameFile @\"C:\\dir\\a.b.txt\""), "\"a.b\"");
    EXPECT_EQ(run("getFilenameType @\"C:\\dir\\a.b.txt\""), "\".txt\"");
    EXPECT_EQ(run("getFilenameType @\"C:\\d.ir\\abc\""), "\"\"");
    EXPECT_EQ(run("filenameFromPath \"C:/dir/a.txt\""), "\"a.txt\"");
    EXPECT_EQ(run("copyFile @\"C:\\dir\\a.b.txt\" \"copy.txt\""), "true");
    EXPECT_EQ(run("copyFile @\"C:\\dir\\a.b.txt\" \"copy.txt\""), "false");
    EXPECT_EQ(run("setFileAttribute \"copy.txt\" #readOnly true; deleteFile \"copy.txt\""), "false");
    EXPECT_EQ(run("getFileAttribute \"copy.txt\" #readOnly"), "true");
    EXPECT_EQ(run("createFile \"copy.txt\""), "undefined");
    EXPECT_EQ(run("setFileAttribute \"copy.txt\" #readOnly false; deleteFile \"copy.txt\""), "true");
    EXPECT_EQ(run("getFiles @\"C:\\dir\\*\""), "#(\"C:\\dir\\a.b.txt\")");
}

TEST_F(MaxscriptPrograms, ExecuteRunsInGlobalScope) {
    EXPECT_EQ(run("execute \"1 + 2\""), "3");
    EXPECT_EQ(run("execute \"q1 = 5; q1 + 1\"\nexecute \"q1\""), "5");
    EXPECT_EQ(run("(local a = 3; execute \"a\")"), "1,1 undeclared name: a"); // global scope
}

TEST_F(MaxscriptPrograms, LimitsEndEveryScript) {
    environment_.step_limit = 100000;
    EXPECT_EQ(run("while true do ()"), "1,1 the script takes too many steps");
    EXPECT_EQ(run("try (while true do ()) catch ()"), "1,6 the script takes too many steps");
    EXPECT_EQ(run("fn f = f(); try (f()) catch (#caught)"), "1,8 the script's calls go too deep");
    EXPECT_EQ(run("fn f = f(); f()"), "1,8 the script's calls go too deep");
    EXPECT_EQ(run("s1 = \"x\"; while true do s1 = s1 + s1"), "1,33 the script takes too many steps");
    EXPECT_EQ(run("a = #(1); while true do join a a"), "1,25 the script takes too many steps");
    EXPECT_EQ(run("a = #(); a[100000000] = 1"), "1,11 an array grows too large");
    EXPECT_EQ(run("t = \"execute t\"; execute t"), "1,1 texts are executed too deep inside each other");
    EXPECT_EQ(run("a = #(); for i = 1 to 30000 do a = #(a); #dropped"), "#dropped");
    EXPECT_EQ(run("struct S (m = S()); S()"), "1,15 the script's calls go too deep");
}

TEST_F(MaxscriptPrograms, DeepTextsAreRefused) {
    const std::string deep(100000, '(');
    EXPECT_EQ(run(deep), "1,121 Syntax error: expressions stand too deep inside each other");
    EXPECT_EQ(run(std::string(100000, '-') + "1"), "undefined"); // a comment
    std::string minus;
    std::string negations;
    std::string sum = "1";
    std::string branches = "x = 5000\n";
    for (int i = 0; i < 5000; ++i) {
        minus += "- ";
        negations += "not ";
        sum += " + 1";
        branches += "if x == " + std::to_string(i) + " then 1 else ";
    }
    EXPECT_NE(run(minus + "1").find("too deep"), std::string::npos);
    EXPECT_NE(run(negations + "true").find("too deep"), std::string::npos);
    EXPECT_EQ(run(sum), "5001");
    EXPECT_EQ(run(branches + "2"), "2");
}

TEST_F(MaxscriptPrograms, DeepestAllowedCallsFitIntoTheStack) {
    // The most levels, each with the deepest expression.
    std::string body = "n";
    for (int i = 0; i < 30; ++i) {
        body = "(1 + (if true then " + body + "))";
    }
    const std::string source = "fn f n = if n == 0 then 0 else (f (n - 1)) + " + body + "\nf 20\nf 100000";
    EXPECT_NE(run(source).find("too deep"), std::string::npos);
}

TEST_F(MaxscriptPrograms, EachCallFromOutsideStartsWithZeroSteps) {
    environment_.step_limit = 1000;
    Interpreter interpreter(environment_);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(outcome_of(interpreter, "for i = 1 to 300 do i"), "OK");
    }
}

} // namespace

// What the ADSL and CRP checks do to start-up scripts: which they cut or leave, and what becomes of the rest
// of a file.
#include "tests/scripts/virus_check_fixture.h"

namespace {

using maxscript::Text;
using support::Lines;
using support::MemoryFile;
using support::utf8;
using support::VirusBench;

// What a family appends to a start-up script. Harmless: it only has the marks.
struct Payload {
    const char* name;
    std::string mark;
    std::string run;
    std::string text;
};

void PrintTo(const Payload& payload, std::ostream* stream) {
    *stream << payload.name;
}

const Payload kPayloads[] = {
    {"Adsl", "ADSL_AScript = \"", "execute ADSL_AScript",
     "ADSL_AScript = \"a = 1\\n-- \\\"b\\\"\"\nADSL_BScript = \"c\"\nexecute ADSL_AScript\n"},
    {"Crp", "CRP_AScript = \"", "execute CRP_BScript",
     "CRP_AScript = \"a = 1\\n-- \\\"b\\\"\"\nCRP_BScript = \"c\"\nexecute CRP_BScript\n"},
};

class StartupFiles : public testing::TestWithParam<Payload> {
protected:
    StartupFiles() : bench_(GetParam().name) {}

    const std::string& payload() const { return GetParam().text; }
    MemoryFile& put(const std::string& content) { return bench_.files.put(kFile, content); }
    Lines removed() const {
        return {"removed payload in start-up file " + utf8(kFile), "1 found, 1 removed, 0 left"};
    }
    Lines stays(const std::string& reason) const {
        return {"could not remove payload in start-up file " + utf8(kFile) + ": " + reason,
                "1 found, 0 removed, 1 left"};
    }
    // The file is cut after `kept`, and the whole of it is in the backup.
    void expect_cut(const std::string& whole, const std::string& kept) {
        put(whole);
        EXPECT_EQ(bench_.check(), removed());
        EXPECT_EQ(bench_.content(kFile), kept);
        EXPECT_EQ(bench_.content(kFile + u".bak"), whole);
        EXPECT_EQ(bench_.startup_names(), Lines({"tools.ms", "tools.ms.bak"}));
    }
    void expect_left(const std::string& whole) {
        put(whole);
        EXPECT_EQ(bench_.check(), Lines({"nothing found"}));
        EXPECT_EQ(bench_.content(kFile), whole);
        EXPECT_EQ(bench_.startup_names(), Lines({"tools.ms"}));
    }

    const Text kFile = VirusBench::user(u"tools.ms");
    VirusBench bench_;
};

INSTANTIATE_TEST_SUITE_P(VirusCheck, StartupFiles, testing::ValuesIn(kPayloads),
                         [](const testing::TestParamInfo<Payload>& one) {
                             return std::string(one.param.name);
                         });

TEST_P(StartupFiles, KeepsTheTextBeforeThePayload) {
    expect_cut("-- mine\r\nprint 1\r\n" + payload(), "-- mine\r\nprint 1\r\n");
}

TEST_P(StartupFiles, KeepsAnEmptyFileWhenThePayloadIsAllOfIt) {
    expect_cut(payload(), "");
}

TEST_P(StartupFiles, CutsInTheMiddleOfALine) {
    expect_cut("print 1; " + payload(), "print 1; ");
}

TEST_P(StartupFiles, CutsAtTheFirstOfTwoPayloads) {
    expect_cut("print 1\n" + payload() + "print 2\n" + payload(), "print 1\n");
}

TEST_P(StartupFiles, TakesTheDeclarationInFrontOfThePayloadWithIt) {
    expect_cut("print 1\n\tpersistent  global " + payload(), "print 1\n\t");
}

TEST_P(StartupFiles, TakesAGlobalDeclarationButNoOtherWord) {
    expect_cut("my_global = 1; global " + payload(), "my_global = 1; ");
}

TEST_P(StartupFiles, LeavesAWordThatOnlyEndsLikeADeclaration) {
    expect_cut("x = my_global\nmy_global\t" + payload(), "x = my_global\nmy_global\t");
}

TEST_P(StartupFiles, LeavesTheEndOfTheLineBefore) {
    expect_cut("-- all of this is global\n" + payload(), "-- all of this is global\n");
}

TEST_P(StartupFiles, TakesTheMarkOfAGlobalNameWithIt) {
    expect_cut("print 1\n::" + payload(), "print 1\n");
}

TEST_P(StartupFiles, FindsThePayloadBehindTextsThatMentionIt) {
    const std::string& mark = GetParam().mark;
    const std::string host = "-- " + mark + "\n/* " + mark + "\n*/ a = \"\\\" " + mark +
                             "\nb = @\"C:\\\"; c = \"" + mark + " /* \" */\nprint 1 -- \"\n";
    expect_cut(host + payload(), host);
}

TEST_P(StartupFiles, KeepsAByteOrderMark) {
    expect_cut("\xEF\xBB\xBF" + ("-- \xC3\xA9\n" + payload()), "\xEF\xBB\xBF-- \xC3\xA9\n");
}

TEST_P(StartupFiles, KeepsBytesOfAnotherCodePage) {
    expect_cut("-- \xC4\xE3\xBA\xC3\r\n" + payload(), "-- \xC4\xE3\xBA\xC3\r\n");
}

std::string utf16(const std::string& ascii, bool big_endian) {
    std::string bytes = big_endian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char letter : ascii) {
        bytes += big_endian ? std::string({'\0', letter}) : std::string({letter, '\0'});
    }
    return bytes;
}

TEST_P(StartupFiles, CutsUtf16InEitherByteOrder) {
    for (const bool big_endian : {false, true}) {
        SCOPED_TRACE(big_endian);
        VirusBench bench(GetParam().name);
        const std::string whole = utf16("-- a\r\nglobal " + payload(), big_endian);
        bench.files.put(kFile, whole);
        EXPECT_EQ(bench.check(), removed());
        EXPECT_EQ(bench.content(kFile), utf16("-- a\r\n", big_endian));
    }
}

TEST_P(StartupFiles, LeavesAMentionInACommentOrAText) {
    const std::string& mark = GetParam().mark;
    const std::string open = mark.substr(0, mark.size() - 1);
    expect_left("-- " + mark + "x\"; " + GetParam().run);
    expect_left("/*\n" + payload() + "*/\nprint 1\n");
    expect_left("a = \"" + open + "\\\"x\\\"\"\nb = \"" + GetParam().run + "\"\n");
    expect_left("-- " + mark + "x\"\n-- " + GetParam().run + "\n");
}

TEST_P(StartupFiles, LeavesAVariableWithALongerName) {
    const std::string first_line = payload().substr(0, payload().find('\n') + 1);
    expect_left("my" + first_line + "-- " + GetParam().run);
    expect_left("my_" + first_line + "-- " + GetParam().run);
    expect_left("a1" + first_line + "-- " + GetParam().run);
}

// A user sets the variable to block the virus: no payload, because nothing runs it.
TEST_P(StartupFiles, LeavesTheBeginningWithoutTheEnd) {
    expect_left(GetParam().mark + "\"\n");
}

TEST_P(StartupFiles, AsksForALookAtAnUnknownForm) {
    const std::string whole = "print 1\n" + GetParam().run + "\n";
    put(whole);
    const Lines lines = bench_.check();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].compare(0, 13, "look at start"), 0) << lines[0];
    EXPECT_NE(lines[0].find(utf8(kFile)), std::string::npos) << lines[0];
    EXPECT_EQ(lines[1], "nothing else found; 1 to look at");
    EXPECT_EQ(bench_.content(kFile), whole);
    bench_.scene.system_startup = bench_.scene.user_startup;
    EXPECT_EQ(bench_.check(), lines);
}

TEST_P(StartupFiles, LeavesFilesOfOtherTypes) {
    for (const char16_t* name : {u"a.mse", u"a.mcr", u"a.txt", u"a.ms.bak", u"a"}) {
        bench_.files.put(VirusBench::user(name), payload());
    }
    bench_.files.put(u"C:\\Users\\me\\Startup\\below\\a.ms", payload());
    bench_.files.put(u"C:\\Users\\me\\a.ms", payload());
    const std::size_t count = bench_.files.paths().size();
    EXPECT_EQ(bench_.check(), Lines({"nothing found"}));
    EXPECT_EQ(bench_.files.paths().size(), count);
}

TEST_P(StartupFiles, LooksIntoBothFoldersAndAllFiles) {
    put("-- a\n" + payload());
    bench_.files.put(VirusBench::user(u"clean.ms"), "print 1");
    bench_.files.put(VirusBench::system(u"B.MS"), "-- b\n" + payload());
    const Lines lines = bench_.check();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines.back(), "2 found, 2 removed, 0 left");
    EXPECT_EQ(bench_.content(kFile), "-- a\n");
    EXPECT_EQ(bench_.content(VirusBench::system(u"B.MS")), "-- b\n");
    EXPECT_EQ(bench_.content(VirusBench::user(u"clean.ms")), "print 1");
}

TEST_P(StartupFiles, TreatsOneFolderUnderTwoNamesOnce) {
    bench_.scene.system_startup = bench_.scene.user_startup;
    expect_cut("-- a\n" + payload(), "-- a\n");
}

TEST_P(StartupFiles, GoesOnWithoutAStartupFolder) {
    bench_.scene.system_startup.clear();
    bench_.files.put(u"\\root.ms", payload());
    expect_cut("-- a\n" + payload(), "-- a\n");
}

TEST_P(StartupFiles, FindsNothingTheSecondTime) {
    expect_cut("-- a\n" + payload(), "-- a\n");
    EXPECT_EQ(bench_.check(), Lines({"nothing found"}));
    EXPECT_EQ(bench_.startup_names(), Lines({"tools.ms", "tools.ms.bak"}));
}

// The first backup may hold text that was cut off with the first payload.
TEST_P(StartupFiles, KeepsEveryEarlierBackup) {
    expect_cut("-- a\n" + payload() + "-- mine too\n", "-- a\n");
    put("-- b\n" + payload());
    EXPECT_EQ(bench_.check(), removed());
    EXPECT_EQ(bench_.content(kFile), "-- b\n");
    EXPECT_EQ(bench_.content(kFile + u".bak"), "-- a\n" + payload() + "-- mine too\n");
    EXPECT_EQ(bench_.content(kFile + u".bak2"), "-- b\n" + payload());
}

TEST_P(StartupFiles, CountsBackupsUpToTheFirstFreeName) {
    for (const char16_t* ending : {u".bak", u".bak2", u".bak3", u".bak4", u".bak5", u".bak6", u".bak8"}) {
        bench_.files.put(kFile + ending, "old");
    }
    put("-- a\n" + payload());
    EXPECT_EQ(bench_.check(), removed());
    EXPECT_EQ(bench_.content(kFile + u".bak7"), "-- a\n" + payload());
}

TEST_P(StartupFiles, GivesUpWhenNoNameForABackupIsFree) {
    bench_.files.put(kFile + u".bak", "old");
    for (int number = 2; number <= 100; ++number) {
        bench_.files.put(kFile + u".bak" + maxscript::text_from_number(number), "old");
    }
    put("-- a\n" + payload());
    EXPECT_EQ(bench_.check(), stays("there is no free name for a backup"));
    EXPECT_EQ(bench_.content(kFile), "-- a\n" + payload());
}

TEST_P(StartupFiles, CutsAReadOnlyFileAndLeavesItReadOnly) {
    put("").read_only = true;
    expect_cut("-- a\n" + payload(), "-- a\n");
    EXPECT_TRUE(bench_.files.is_read_only(kFile));
    EXPECT_FALSE(bench_.files.is_read_only(kFile + u".bak"));
}

TEST_P(StartupFiles, ReportsAFileThatIsHeldAndLeavesNoTrace) {
    MemoryFile& file = put("-- a\n" + payload());
    file.held = true;
    file.read_only = true;
    EXPECT_EQ(bench_.check(), stays("it cannot be replaced"));
    EXPECT_EQ(bench_.content(kFile), "-- a\n" + payload());
    EXPECT_TRUE(bench_.files.is_read_only(kFile));
    EXPECT_EQ(bench_.startup_names(), Lines({"tools.ms"}));
}

TEST_P(StartupFiles, ReportsAFolderInWhichNothingCanBeWritten) {
    put("-- a\n" + payload());
    bench_.files.lock_folder(u"C:\\Users\\me\\Startup");
    EXPECT_EQ(bench_.check(), stays("no backup can be written beside it"));
    EXPECT_EQ(bench_.content(kFile), "-- a\n" + payload());
}

TEST_P(StartupFiles, ReportsADiskThatIsFullAndLeavesNoTrace) {
    const std::string whole = "-- a\n" + payload();
    put(whole);
    bench_.files.leave_space(whole.size() + 2);
    EXPECT_EQ(bench_.check(), stays("nothing can be written beside it"));
    EXPECT_EQ(bench_.content(kFile), whole);
    EXPECT_EQ(bench_.startup_names(), Lines({"tools.ms"}));
}

TEST_P(StartupFiles, PutsTheFileBackWhenTheNewOneCannotTakeItsName) {
    put("-- a\n" + payload());
    bench_.files.refuse_renaming();
    EXPECT_EQ(bench_.check(), stays("it cannot be replaced; its backup is " + utf8(kFile) + ".bak"));
    EXPECT_EQ(bench_.content(kFile), "-- a\n" + payload());
    EXPECT_EQ(bench_.startup_names(), Lines({"tools.ms", "tools.ms.bak"}));
}

TEST_P(StartupFiles, TellsOfAFileThatCannotBeRead) {
    put(payload()).unreadable = true;
    EXPECT_EQ(bench_.check(),
              Lines({"cannot read start-up file " + utf8(kFile), "nothing else found; 1 to look at"}));
}

TEST_P(StartupFiles, CountsTheFilesThatAPersonHasToLookAt) {
    put(payload());
    bench_.files.put(VirusBench::user(u"unknown.ms"), GetParam().run);
    bench_.files.put(VirusBench::system(u"held.ms"), "x").unreadable = true;
    EXPECT_EQ(bench_.check().back(), "1 found, 1 removed, 0 left; 2 to look at");
    EXPECT_EQ(bench_.check().back(), "nothing else found; 2 to look at");
}

} // namespace

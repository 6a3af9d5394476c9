// What the ALC check does to start-up scripts: which it renames, leaves, or names for a person to look at.
#include "tests/scripts/virus_check_fixture.h"

namespace {

using maxscript::Text;
using support::Lines;
using support::MemoryFile;
using support::utf8;
using support::VirusBench;

enum class Fate { removed, looked_at, left };

struct NameCase {
    const char16_t* name;
    Fate fate;
};

const NameCase kNames[] = {
    {u"vrdematcleanbeta.ms", Fate::removed},
    {u"vrdematcleanbeta.mse", Fate::removed},
    {u"vrdematcleanbeta.msex", Fate::removed},
    {u"vrdematcleanalpha.mse", Fate::removed},
    {u"VrDestermatConvertor.MSE", Fate::removed},
    {u"vrdematpropalpha.ms", Fate::removed},
    {u"vrayimportinfo.mse", Fate::removed},
    {u"vrdematclean.ms", Fate::looked_at},
    {u"vrdematcleaner.mse", Fate::looked_at},
    {u"vrdestermatc.ms", Fate::looked_at},
    {u"vrdematproperties.msex", Fate::looked_at},
    {u"VRayImportInfo.ms", Fate::looked_at},
    {u"vrdematclean.txt", Fate::left},
    {u"vrdematcleanbeta.ms.bak", Fate::left},
    {u"vrdematcleanbeta", Fate::left},
    {u"my_vrdematcleanbeta.ms", Fate::left},
    {u"vrdemat.ms", Fate::left},
    {u"vrayimport.ms", Fate::left},
    {u"cleanalpha.ms", Fate::left},
    {u"vraystartup.ms", Fate::left},
};

TEST(VirusCheckAlcFiles, RenamesItsOwnFilesAndNoOthers) {
    for (const NameCase& one : kNames) {
        const Text path = VirusBench::user(one.name);
        SCOPED_TRACE(utf8(path));
        VirusBench bench("Alc");
        bench.files.put(path, "-- AutodeskLicSerStuckCleanBeta");
        if (one.fate == Fate::removed) {
            EXPECT_EQ(bench.check(),
                      Lines({"removed start-up file " + utf8(path), "1 found, 1 removed, 0 left"}));
            EXPECT_EQ(bench.content(path), "(no such file)");
            EXPECT_EQ(bench.content(path + u".bak"), "-- AutodeskLicSerStuckCleanBeta");
        }
        EXPECT_EQ(bench.check().back(),
                  one.fate == Fate::looked_at ? "nothing else found; 1 to look at" : "nothing found");
        EXPECT_EQ(bench.startup_names().size(), 1U);
    }
}

// Guides tell users to make empty, read-only files under the virus's names.
TEST(VirusCheckAlcFiles, LeavesEmptyFilesAsTheProtectionThatTheyAre) {
    VirusBench bench("Alc");
    Lines expected;
    for (const char16_t* const name :
         {u"vrdematcleanbeta.ms", u"vrdematcleanbeta.mse", u"vrdematcleanbeta.msex"}) {
        bench.files.put(VirusBench::user(name), "").read_only = true;
        expected.push_back("left empty start-up file " + utf8(VirusBench::user(name)) +
                           ": it keeps the virus from writing its own");
    }
    for (const char16_t* const name : {u"..ms", u"0.ms", u"vrdematcleanse.ms"}) {
        bench.files.put(VirusBench::user(name), "").read_only = true;
    }
    expected.push_back("nothing found");
    EXPECT_EQ(bench.check(), expected);
    EXPECT_EQ(bench.startup_names().size(), 6U);
    for (const char* const family : {"Adsl", "Crp"}) {
        bench.load(family);
        EXPECT_EQ(bench.check(), Lines({"nothing found"}));
    }
    EXPECT_EQ(bench.startup_names().size(), 6U);
}

TEST(VirusCheckAlcFiles, RemovesReadOnlyFilesFromBothFoldersAndKeepsEarlierBackups) {
    VirusBench bench("Alc");
    bench.files.put(VirusBench::user(u"vrayimportinfo.mse"), "new").read_only = true;
    bench.files.put(VirusBench::user(u"vrayimportinfo.mse.bak"), "old");
    for (const char16_t* ending : {u"2", u"3", u"4", u"5", u"6"}) {
        bench.files.put(VirusBench::user(u"vrayimportinfo.mse.bak") + ending, "old");
    }
    bench.files.put(VirusBench::system(u"vrdematpropalpha.mse"), "new");
    EXPECT_EQ(bench.check().back(), "2 found, 2 removed, 0 left");
    EXPECT_EQ(bench.startup_names().size(), 7U);
    EXPECT_EQ(bench.content(VirusBench::user(u"vrayimportinfo.mse.bak")), "old");
    EXPECT_EQ(bench.content(VirusBench::user(u"vrayimportinfo.mse.bak7")), "new");
    EXPECT_FALSE(bench.files.is_read_only(VirusBench::user(u"vrayimportinfo.mse.bak7")));
    EXPECT_EQ(bench.content(VirusBench::system(u"vrdematpropalpha.mse.bak")), "new");
}

TEST(VirusCheckAlcFiles, GivesUpWhenNoNameForABackupIsFree) {
    VirusBench bench("Alc");
    const Text path = VirusBench::user(u"vrayimportinfo.mse");
    bench.files.put(path, "x");
    bench.files.put(path + u".bak", "old");
    for (int number = 2; number <= 100; ++number) {
        bench.files.put(path + u".bak" + maxscript::text_from_number(number), "old");
    }
    EXPECT_EQ(bench.check().front(),
              "could not remove start-up file " + utf8(path) + ": there is no free name for a backup");
    EXPECT_EQ(bench.content(path), "x");
}

TEST(VirusCheckAlcFiles, GoesOnWithoutAStartupFolder) {
    VirusBench bench("Alc");
    bench.scene.system_startup.clear();
    bench.files.put(u"\\vrayimportinfo.mse", "x");
    EXPECT_EQ(bench.check(), Lines({"nothing found"}));
}

TEST(VirusCheckAlcFiles, TreatsOneFolderUnderTwoNamesOnce) {
    VirusBench bench("Alc");
    bench.scene.system_startup = bench.scene.user_startup;
    bench.files.put(VirusBench::user(u"vrayimportinfo.mse"), "x");
    EXPECT_EQ(bench.check().back(), "1 found, 1 removed, 0 left");
}

TEST(VirusCheckAlcFiles, ReportsFilesThatStayAndGoesOn) {
    VirusBench bench("Alc");
    MemoryFile& held = bench.files.put(VirusBench::user(u"vrayimportinfo.mse"), "x");
    held.held = true;
    held.read_only = true;
    bench.files.put(VirusBench::system(u"vrdematpropalpha.mse"), "x");
    bench.files.lock_folder(u"C:\\Max\\scripts\\Startup");
    bench.files.put(VirusBench::user(u"vrdematcleanbeta.ms"), "x");
    EXPECT_EQ(
        bench.check(),
        Lines({"could not remove start-up file C:\\Max\\scripts\\Startup\\vrdematpropalpha.mse: it cannot "
               "be renamed",
               "could not remove start-up file " + utf8(VirusBench::user(u"vrayimportinfo.mse")) +
                   ": it cannot be renamed",
               "removed start-up file " + utf8(VirusBench::user(u"vrdematcleanbeta.ms")),
               "3 found, 1 removed, 2 left"}));
    EXPECT_TRUE(bench.files.is_read_only(VirusBench::user(u"vrayimportinfo.mse")));
}

} // namespace

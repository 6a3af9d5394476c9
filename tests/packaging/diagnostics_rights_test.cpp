#include "packaging/diagnostics/rights.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using diagnostics::Kind;
using diagnostics::opens;

constexpr unsigned long kReadAndStart = 0x1200A9;

TEST(DiagnosticsRights, ReadAndExecuteAllowsNoChange) {
    for (Kind kind : {Kind::file, Kind::program_folder, Kind::shared_folder}) {
        EXPECT_FALSE(opens(kReadAndStart, kind));
    }
}

TEST(DiagnosticsRights, DeleteOwnershipAndGenericRightsAllowChangesEverywhere) {
    for (unsigned long right : {0x10000UL, 0x40000UL, 0x80000UL, 0x10000000UL, 0x40000000UL}) {
        for (Kind kind : {Kind::file, Kind::program_folder, Kind::shared_folder}) {
            EXPECT_TRUE(opens(kReadAndStart | right, kind)) << right;
        }
    }
}

TEST(DiagnosticsRights, EachWriteRightAllowsChangesOnlyInItsKinds) {
    struct Row {
        unsigned long right;
        bool file;
        bool program_folder;
        bool shared_folder;
    };
    for (const Row& row :
         {Row{0x2, true, true, false},     // FILE_WRITE_DATA, FILE_ADD_FILE
          Row{0x4, true, false, false},    // FILE_APPEND_DATA, FILE_ADD_SUBDIRECTORY
          Row{0x40, false, true, true}}) { // FILE_DELETE_CHILD, which means nothing for a file
        EXPECT_EQ(opens(kReadAndStart | row.right, Kind::file), row.file) << row.right;
        EXPECT_EQ(opens(kReadAndStart | row.right, Kind::program_folder), row.program_folder) << row.right;
        EXPECT_EQ(opens(kReadAndStart | row.right, Kind::shared_folder), row.shared_folder) << row.right;
    }
}

TEST(DiagnosticsRights, PluginAndSevenZipFoldersAreCheckedAsProgramFolders) {
    std::map<std::wstring, Kind> kinds;
    for (const diagnostics::ClosedPlace& place : diagnostics::closed_places(L"D", L"P")) {
        EXPECT_TRUE(kinds.emplace(place.path, place.kind).second);
    }
    EXPECT_EQ(kinds.at(L"P"), Kind::program_folder);
    EXPECT_EQ(kinds.at(L"P\\Contents"), Kind::program_folder);
    EXPECT_EQ(kinds.at(L"D\\7-Zip"), Kind::program_folder);
    EXPECT_EQ(kinds.at(L"D"), Kind::shared_folder);
    EXPECT_EQ(kinds.at(L"D\\script"), Kind::shared_folder);
    for (const wchar_t* file :
         {L"D\\script\\MaxRenderGlobalsParser.ms", L"D\\7-Zip\\7z.exe", L"D\\7-Zip\\7z.dll",
          L"P\\PackageContents.xml", L"P\\Contents\\TarvoRendering.gup",
          L"P\\Contents\\PrepareAnalysisScript.ms"}) {
        EXPECT_EQ(kinds.at(file), Kind::file);
    }
}

} // namespace

// Any name that Windows allows, through the real 7z.exe, with neighbours beside it that a damaged name would
// hit. TARVO_NAMES says how many names (100 when missing), TARVO_NAMES_SEED which; tools/names.sh sets both.
#include "common/platform.h"
#include "common/text.h"
#include "scene/scene_data.h"
#include "submit/plugin_config.h"
#include "submit/scene_archive.h"
#include "tests/support/patched_import.h"
#include "tests/support/random_names.h"
#include "tests/support/seven_zip_entry.h"
#include "tests/support/seven_zip_program.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_host.h"
#include "tests/support/wide_file.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <iostream>
#include <map>

namespace {

using support::escaped;

// Linux, below Wine, allows 255 bytes; the archive's name has ten more than the stem, the decoys some too.
constexpr std::size_t kLongestName = 235;
constexpr std::size_t kLongestFolder = 60;

using Files = std::map<std::wstring, std::string>;

void collect(const std::wstring& folder, Files& files) {
    WIN32_FIND_DATAW found = {};
    const HANDLE search = ::FindFirstFileW((folder + L"\\*").c_str(), &found);
    for (BOOL more = search != INVALID_HANDLE_VALUE; more != FALSE; more = ::FindNextFileW(search, &found)) {
        const std::wstring name = found.cFileName;
        const std::wstring path = folder + L"\\" + name;
        if (name == L"." || name == L"..") {
            continue;
        }
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            files[path] = "a folder";
            collect(path, files);
        } else {
            files[path] = support::read_wide_file(path);
        }
    }
    ::FindClose(search);
}

Files files_below(const std::wstring& folder) {
    Files files;
    collect(folder, files);
    return files;
}

// Folders come before what is in them.
void remove_all(const Files& files) {
    for (auto file = files.rbegin(); file != files.rend(); ++file) {
        if (::DeleteFileW(file->first.c_str()) == FALSE) {
            ::RemoveDirectoryW(file->first.c_str());
        }
    }
}

// A hidden console is one more process under Wine and is not tested here.
BOOL WINAPI create_without_console(LPCWSTR application, LPWSTR command, LPSECURITY_ATTRIBUTES process,
                                   LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags,
                                   LPVOID environment, LPCWSTR folder, LPSTARTUPINFOW startup,
                                   LPPROCESS_INFORMATION information) {
    const auto real = reinterpret_cast<decltype(&::CreateProcessW)>(
        ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "CreateProcessW"));
    return real(application, command, process, thread, inherit,
                (flags & ~static_cast<DWORD>(CREATE_NO_WINDOW)) | DETACHED_PROCESS, environment, folder,
                startup, information);
}

long number_from(const char* variable, long fallback) {
    const char* text = std::getenv(variable);
    return text == nullptr ? fallback : std::atol(text);
}

class ArchiveNames : public ::testing::Test {
protected:
    ArchiveNames() {
        support::plugin_folder();
        reset_test_host();
        tarvo::LoadClientConfiguration(scene, fresh);
        wchar_t temporary[MAX_PATH] = {};
        ::GetTempPathW(MAX_PATH, temporary);
        work = std::wstring(temporary) + L"tarvo names";
        ::CreateDirectoryW(work.c_str(), nullptr);
        remove_all(files_below(work));
    }
    ~ArchiveNames() override { remove_all(files_below(work)); }

    // False when the file system does not take the name, or has it already.
    static bool make_file(const std::wstring& path, const std::string& content) {
        const std::wstring::size_type separator = path.find_last_of(L"\\/");
        ::CreateDirectoryW(path.substr(0, separator).c_str(), nullptr);
        if (::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) {
            return false;
        }
        support::write_wide_file(path, content);
        return support::read_wide_file(path) == content;
    }

    void make_decoys(const std::wstring& folder, const std::wstring& name, support::RandomNames& random) {
        for (const std::wstring& other : support::neighbours(name, random, 5)) {
            decoys += make_file(work + L"\\" + folder + L"\\" + other + L".max", "decoy " + escaped(other));
        }
        for (const std::wstring& other : support::neighbours(folder, random, 2)) {
            decoys += make_file(work + L"\\" + other + L"\\" + name + L".max", "decoy in " + escaped(other));
        }
        make_file(work + L"\\bystander.max", "bystander");
    }

    // Packs the file and then checks every file in the folders.
    void expect_packed(const std::wstring& file, const std::string& content) {
        tarvo::PluginConfig config = fresh;
        config.sceneFile = tarvo::WideToUtf8(file);
        test_host().file_path = file;
        const Files before = files_below(work);
        ASSERT_TRUE(tarvo::PrepareSceneArchive(scene, config.sceneFile, "", L"", config));
        const Files archives = files_below(config.compressDir);
        const std::size_t mark = support::log_mark("qfx_data");
        tarvo::RunSevenZip(scene, config.sceneFile, config);
        EXPECT_TRUE(files_below(work) == before) << "a file beside the scene was touched";

        const std::wstring archive = tarvo::Utf8ToWide(config.archivePath);
        support::SevenZipEntry entry;
        EXPECT_TRUE(support::read_only_entry(support::read_wide_file(archive), entry))
            << "no archive with one entry: "
            << ::testing::PrintToString(support::log_lines_since("qfx_data", mark));
        EXPECT_EQ(escaped(entry.name), escaped(file.substr(file.rfind(L'\\') + 1)));
        EXPECT_EQ(entry.size, content.size());
        EXPECT_EQ(entry.crc, support::crc_of(content));
        EXPECT_TRUE(::DeleteFileW(archive.c_str()));
        EXPECT_TRUE(files_below(config.compressDir) == archives) << "another archive was written";
    }

    tarvo::SceneData scene;
    tarvo::PluginConfig fresh;
    std::wstring work;
    long decoys = 0;
};

TEST_F(ArchiveNames, AnyNameIsPackedAndItsNeighboursAreLeftAlone) {
    ASSERT_NO_FATAL_FAILURE(support::install_seven_zip());
    const support::PatchedImport patch("KERNEL32.dll", "CreateProcessW",
                                       reinterpret_cast<void*>(&create_without_console));
    ASSERT_TRUE(patch.installed());
    const long count = number_from("TARVO_NAMES", 100);
    const long seed = number_from("TARVO_NAMES_SEED", static_cast<long>(::GetACP()));
    long packed = 0;
    long impossible = 0;
    for (long index = 0; index < count && !HasFailure(); ++index) {
        support::RandomNames random(static_cast<std::uint32_t>(seed * 1000003 + index));
        const std::wstring folder = random.next(kLongestFolder);
        const std::wstring name = random.next(kLongestName);
        SCOPED_TRACE("seed " + std::to_string(seed) + ", number " + std::to_string(index) + ": " +
                     escaped(folder) + " / " + escaped(name));
        const std::string content = "the scene " + escaped(name);
        const std::wstring file = work + L"\\" + folder + L"\\" + name + L".max";
        if (!make_file(file, content)) {
            ++impossible;
            continue;
        }
        make_decoys(folder, name, random);
        expect_packed(file, content);
        remove_all(files_below(work));
        ++packed;
    }
    std::cout << "names: " << packed << " packed, " << impossible << " refused by the file system, " << decoys
              << " decoys, seed " << seed << ", code page " << ::GetACP() << std::endl;
    EXPECT_GE(packed, count * 9 / 10);
}

} // namespace

// The rights that setup gives its folders (packaging/rights.nsh), parsed by the system and evaluated here:
// Wine does not store access control lists, so they cannot be tested on real files.
#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <string>

#include <sddl.h>

namespace {

constexpr DWORD kAddFile = FILE_ADD_FILE;
constexpr DWORD kAddFolder = FILE_ADD_SUBDIRECTORY;
constexpr DWORD kChange = FILE_WRITE_DATA | FILE_APPEND_DATA | DELETE;
constexpr DWORD kTakeOver = WRITE_DAC | WRITE_OWNER | FILE_DELETE_CHILD;
constexpr DWORD kRead = FILE_GENERIC_READ | FILE_GENERIC_EXECUTE;

std::string narrow(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

// name -> SDDL, from the lines `!define RIGHTS_NAME "SDDL"`.
std::map<std::string, std::string> defined_rights() {
    std::map<std::string, std::string> rights;
    std::ifstream file(narrow("TARVO_TEST_DATA") + "/../../packaging/rights.nsh");
    const std::string begin = "!define RIGHTS_";
    for (std::string line; std::getline(file, line);) {
        const std::size_t quote = line.find('"');
        if (line.compare(0, begin.size(), begin) == 0 && quote != std::string::npos) {
            const std::string name = line.substr(begin.size(), line.find(' ', begin.size()) - begin.size());
            rights[name] = line.substr(quote + 1, line.rfind('"') - quote - 1);
        }
    }
    return rights;
}

struct LocalMemory {
    void operator()(void* memory) const { ::LocalFree(memory); }
};

class Rights {
public:
    explicit Rights(const std::string& name) {
        const std::string text = defined_rights()[name];
        PSECURITY_DESCRIPTOR descriptor = nullptr;
        EXPECT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorA(text.c_str(), SDDL_REVISION_1,
                                                                           &descriptor, nullptr))
            << name << " '" << text << "'";
        descriptor_.reset(descriptor);
    }

    bool owned_by_administrators() const {
        PSID owner = nullptr;
        BOOL defaulted = FALSE;
        return ::GetSecurityDescriptorOwner(descriptor_.get(), &owner, &defaulted) != FALSE &&
               owner != nullptr && ::IsWellKnownSid(owner, WinBuiltinAdministratorsSid) != FALSE;
    }

    bool inherits_from_above() const {
        SECURITY_DESCRIPTOR_CONTROL control = 0;
        DWORD revision = 0;
        ::GetSecurityDescriptorControl(descriptor_.get(), &control, &revision);
        return (control & SE_DACL_PROTECTED) == 0;
    }

    // For the object itself.
    DWORD here(WELL_KNOWN_SID_TYPE who) const {
        return sum(who, [](BYTE flags) { return (flags & INHERIT_ONLY_ACE) == 0; });
    }
    // For a file or a folder that is created in it later.
    DWORD new_file(WELL_KNOWN_SID_TYPE who) const {
        return sum(who, [](BYTE flags) { return (flags & OBJECT_INHERIT_ACE) != 0; });
    }
    DWORD new_folder(WELL_KNOWN_SID_TYPE who) const {
        return sum(who, [](BYTE flags) { return (flags & CONTAINER_INHERIT_ACE) != 0; });
    }

private:
    template <typename Counts>
    DWORD sum(WELL_KNOWN_SID_TYPE who, Counts counts) const {
        PACL list = nullptr;
        BOOL present = FALSE;
        BOOL defaulted = FALSE;
        if (::GetSecurityDescriptorDacl(descriptor_.get(), &present, &list, &defaulted) == FALSE ||
            list == nullptr) {
            ADD_FAILURE() << "no list of rights";
            return 0;
        }
        DWORD allowed = 0;
        for (DWORD i = 0; i < list->AceCount; ++i) {
            void* entry = nullptr;
            ::GetAce(list, i, &entry);
            ACCESS_ALLOWED_ACE* ace = static_cast<ACCESS_ALLOWED_ACE*>(entry);
            EXPECT_EQ(ace->Header.AceType, ACCESS_ALLOWED_ACE_TYPE);
            if (counts(ace->Header.AceFlags) && ::IsWellKnownSid(&ace->SidStart, who) != FALSE) {
                allowed |= ace->Mask;
            }
        }
        return allowed;
    }

    std::unique_ptr<void, LocalMemory> descriptor_;
};

const char* const kAll[] = {"DATA", "SCRIPT", "WRITTEN", "PROGRAM", "FILE", "OPEN_INI"};
constexpr WELL_KNOWN_SID_TYPE kUsers = WinBuiltinUsersSid;

TEST(SetupRights, FileDefinesExactlySixSetsOfRights) {
    EXPECT_EQ(defined_rights().size(), 6U);
}

TEST(SetupRights, AdministratorsOwnEverythingAndNothingIsInherited) {
    for (const char* name : kAll) {
        const Rights rights(name);
        EXPECT_TRUE(rights.owned_by_administrators()) << name;
        EXPECT_FALSE(rights.inherits_from_above()) << name;
        EXPECT_EQ(rights.here(WinBuiltinAdministratorsSid), FILE_ALL_ACCESS) << name;
        EXPECT_EQ(rights.here(WinLocalSystemSid), FILE_ALL_ACCESS) << name;
    }
}

TEST(SetupRights, UsersReadEverythingAndCannotTakeControl) {
    for (const char* name : kAll) {
        const Rights rights(name);
        EXPECT_EQ(rights.here(kUsers) & kRead, kRead) << name;
        EXPECT_EQ(rights.here(kUsers) & kTakeOver, 0U) << name;
        EXPECT_EQ(rights.new_file(kUsers) & kTakeOver, 0U) << name;
        EXPECT_EQ(rights.new_folder(kUsers) & kTakeOver, 0U) << name;
        for (WELL_KNOWN_SID_TYPE others : {WinWorldSid, WinAuthenticatedUserSid, WinInteractiveSid}) {
            EXPECT_EQ(rights.here(others) | rights.new_file(others) | rights.new_folder(others), 0U) << name;
        }
    }
}

TEST(SetupRights, ProgramsAndSingleFilesAreReadOnly) {
    const Rights program("PROGRAM");
    EXPECT_EQ(program.here(kUsers) & (kAddFile | kAddFolder | kChange), 0U);
    EXPECT_EQ(program.new_file(kUsers) & kChange, 0U);
    EXPECT_EQ(program.new_file(kUsers) & kRead, kRead);
    EXPECT_EQ(Rights("FILE").here(kUsers) & kChange, 0U);
    EXPECT_EQ(Rights("FILE").here(WinCreatorOwnerSid), 0U);
}

TEST(SetupRights, UsersAddScriptFilesThatOnlyTheirCreatorChanges) {
    const Rights script("SCRIPT");
    EXPECT_EQ(script.here(kUsers) & (kAddFile | kAddFolder | DELETE), kAddFile);
    EXPECT_EQ(script.new_file(kUsers) & kChange, 0U);
    EXPECT_EQ(script.new_file(kUsers) & kRead, kRead);
    EXPECT_EQ(script.new_file(WinCreatorOwnerSid) & kChange, kChange);
}

TEST(SetupRights, UsersAddAndChangeFilesButNoFoldersWhereThePluginWrites) {
    const Rights written("WRITTEN");
    EXPECT_EQ(written.here(kUsers) & (kAddFile | kAddFolder | DELETE), kAddFile);
    EXPECT_EQ(written.new_file(kUsers) & kChange, kChange);
}

TEST(SetupRights, UsersAddDataFoldersWithTheRightsOfWrittenFolders) {
    const Rights data("DATA");
    EXPECT_EQ(data.here(kUsers) & (kAddFile | kAddFolder | DELETE), kAddFolder);
    EXPECT_EQ(data.new_folder(kUsers) & (kAddFile | kAddFolder | DELETE), kAddFile);
    EXPECT_EQ(data.new_file(kUsers) & kChange, kChange);
}

TEST(SetupRights, IniFileOpenedToUsersCanBeChangedButNotDeleted) {
    EXPECT_EQ(Rights("OPEN_INI").here(kUsers) & (FILE_WRITE_DATA | DELETE), DWORD{FILE_WRITE_DATA});
}

} // namespace

// The finished module with its string table removed right after loading: every text is missing and must count
// as empty.
#include "tests/product/module/module_fixture.h"

namespace {

// Renumbers the resource type, so that no lookup finds it.
void hide_string_table(HMODULE module) {
    char* base = reinterpret_cast<char*>(module);
    const auto dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const DWORD place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_RESOURCE].VirtualAddress;
    const auto root = reinterpret_cast<IMAGE_RESOURCE_DIRECTORY*>(base + place);
    const auto entries = reinterpret_cast<IMAGE_RESOURCE_DIRECTORY_ENTRY*>(root + 1);
    const WORD string_kind = static_cast<WORD>(reinterpret_cast<ULONG_PTR>(RT_STRING));
    for (int i = 0; i < root->NumberOfNamedEntries + root->NumberOfIdEntries; ++i) {
        DWORD before = 0;
        if (entries[i].Id == string_kind &&
            ::VirtualProtect(&entries[i], sizeof entries[i], PAGE_EXECUTE_READWRITE, &before) != FALSE) {
            entries[i].Name = string_kind + 1u; // the order of the numbers stays
        }
    }
}

class ModuleWithoutTexts : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        module_.reset(new LoadedModule);
        ASSERT_NE(L"", module_->text(31));
        hide_string_table(module_->handle());
        ASSERT_EQ(L"", module_->text(31));
    }

    void TearDown() override {
        HostTest::TearDown();
        module_.reset();
    }

    std::unique_ptr<LoadedModule> module_;
};

TEST_F(ModuleWithoutTexts, DescriptionIsNullAndClassNamesAreEmpty) {
    EXPECT_EQ(nullptr, module_->description());
    EXPECT_STREQ(L"", module_->class_at(0)->ClassName());
    EXPECT_STREQ(L"", module_->class_at(0)->Category());
    EXPECT_STREQ(L"Tarvo_Rendering", module_->class_at(0)->InternalName());
}

// A menu without a title never matches the plugin's menu.
TEST_F(ModuleWithoutTexts, ForeignMenusAreLeftAlone) {
    host_sdk::load_menus(L"host menus 1\nmenu\t\nsubmenu\t1\t1\tTheirs\nmenu\t\nseparator\n"
                         L"text\t1\tAn entry\n");
    const std::wstring before = host_sdk::describe_menus();
    GUP* plugin = module_->create_plugin();
    EXPECT_EQ(0u, plugin->Start());
    host_sdk::broadcast_notification(kSystemStartup);
    EXPECT_EQ(before, host_sdk::describe_menus());
    EXPECT_EQ(2, host_sdk::active_callback_count(kTableId));
    plugin->Stop();
    plugin->DeleteThis();
    EXPECT_EQ(before, host_sdk::describe_menus());
}

} // namespace

#include "tests/product/module/module_fixture.h"

#include <string>

namespace {

class ModuleExports : public ModuleTest {};

TEST_F(ModuleExports, AllSixAreExportedUnderUndecoratedNames) {
    for (const char* name : {"LibDescription", "LibNumberClasses", "LibClassDesc", "LibVersion",
                             "LibInitialize", "LibShutdown"}) {
        EXPECT_NE(nullptr, module_->address(name)) << name;
    }
}

TEST_F(ModuleExports, ThreeExportsShareOneFunctionThatReturnsOne) {
    EXPECT_EQ(module_->address("LibNumberClasses"), module_->address("LibInitialize"));
    EXPECT_EQ(module_->address("LibNumberClasses"), module_->address("LibShutdown"));
    for (int time = 0; time < 3; ++time) { // the host may initialize more than once
        EXPECT_EQ(1, module_->initialize());
    }
    EXPECT_EQ(1, module_->number_of_classes());
    EXPECT_EQ(1, module_->shut_down());
}

TEST_F(ModuleExports, VersionIsThatOfHost2019) {
    EXPECT_EQ(0x52083400u, module_->version());
    EXPECT_EQ(1376269312u, module_->version());
}

TEST_F(ModuleExports, TheDescriptionIsInTheLanguageOfTheUser) {
    ASSERT_FALSE(text(1).empty());
    EXPECT_EQ(text(1), module_->description());
    const LANGID language = PRIMARYLANGID(::GetUserDefaultUILanguage());
    EXPECT_EQ(language == LANG_CHINESE ? L"1" : L"0", text(57));
}

TEST_F(ModuleExports, ThereIsOneClass) {
    ASSERT_NE(nullptr, module_->class_at(0));
    EXPECT_EQ(module_->class_at(0), module_->class_at(0));
    for (const int index : {1, -1, 2, 1000000, -1000000}) {
        EXPECT_EQ(nullptr, module_->class_at(index)) << index;
    }
}

TEST_F(ModuleExports, DescriptorReturnsItsFixedValues) {
    ClassDesc& descriptor = *module_->class_at(0);
    EXPECT_EQ(text(3), descriptor.ClassName());
    EXPECT_EQ(text(2), descriptor.Category());
    EXPECT_FALSE(text(3).empty());
    EXPECT_FALSE(text(2).empty());
    EXPECT_TRUE(descriptor.IsPublic());
    EXPECT_EQ(0x10E0u, descriptor.SuperClassID());
    EXPECT_EQ(0x2E87AC90u, descriptor.ClassID().PartA());
    EXPECT_EQ(0x85FBF488u, descriptor.ClassID().PartB());
    EXPECT_STREQ(L"Tarvo_Rendering", descriptor.InternalName());
    EXPECT_EQ(module_->handle(), descriptor.HInstance());
    EXPECT_EQ(0, static_cast<ClassDesc2&>(descriptor).NumParamBlockDescs());
}

TEST_F(ModuleExports, DescriptionAndClassNamesCallNothingInTheHost) {
    forget_calls();
    module_->description();
    ClassDesc& descriptor = *module_->class_at(0);
    descriptor.ClassName();
    descriptor.Category();
    module_->create_plugin()->DeleteThis();
    // Destroying looks for the menu; nothing else is called.
    expect_calls({L"Interface::GetMenuManager()", L"IMenuManager::FindMenu(\"{31}\")"});
}

// The host keeps the pointers, while the module looks up further texts.
TEST_F(ModuleExports, ReturnedTextPointersStayValid) {
    start();
    ClassDesc& descriptor = *module_->class_at(0);
    const MCHAR* const kept[] = {module_->description(), descriptor.ClassName(), descriptor.Category(),
                                 descriptor.InternalName()};
    const std::wstring expected[] = {text(1), text(3), text(2), L"Tarvo_Rendering"};
    ActionTable* table = actions().FindTable(kTableId);
    ASSERT_NE(nullptr, table);
    for (int time = 0; time < 100; ++time) {
        MSTR menu_text;
        EXPECT_TRUE(table->GetMenuText(kOpenDialog, menu_text));
        EXPECT_TRUE(table->GetMenuText(kShowAbout, menu_text));
        host_sdk::broadcast_notification(kSystemStartup);
    }
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(expected[i], kept[i]);
    }
    EXPECT_EQ(kept[0], module_->description());
    EXPECT_EQ(kept[1], descriptor.ClassName());
    EXPECT_EQ(kept[2], descriptor.Category());
    EXPECT_EQ(kept[3], descriptor.InternalName());
}

TEST_F(ModuleExports, EveryPluginObjectIsNewAndOnTheHostsHeap) {
    const long before = host_sdk::live_heap_objects();
    GUP* first = module_->create_plugin();
    GUP* second = static_cast<GUP*>(module_->class_at(0)->Create(TRUE));
    EXPECT_NE(first, second);
    EXPECT_EQ(before + 2, host_sdk::live_heap_objects());
    first->DeleteThis();
    second->DeleteThis();
    EXPECT_EQ(before, host_sdk::live_heap_objects());
}

TEST_F(ModuleExports, VersionAndManifestAreInTheModule) {
    EXPECT_NE(nullptr, ::FindResourceW(module_->handle(), MAKEINTRESOURCEW(2), RT_MANIFEST));
    const HRSRC version = ::FindResourceW(module_->handle(), MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
    EXPECT_NE(nullptr, version);
    for (const WORD dialog : {102, 103}) {
        EXPECT_NE(nullptr, ::FindResourceW(module_->handle(), MAKEINTRESOURCEW(dialog), RT_DIALOG));
    }
}

} // namespace

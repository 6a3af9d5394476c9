#include "common/string_table.h"
#include "plugin/plugin_object.h"
#include "tests/product/plugin/plugin_fixture.h"

// The module's entry points, as its definition file exports them.
extern "C" {
const MCHAR* LibDescription();
ClassDesc* LibClassDesc(int index);
ULONG LibVersion();
int AnswerOne();
}

namespace {

class PluginModule : public HostTest {
protected:
    void TearDown() override {
        tarvo::SetModuleInstance(::GetModuleHandleW(nullptr));
        HostTest::TearDown();
    }
};

TEST_F(PluginModule, EntryPointsReturnTheirFixedValues) {
    EXPECT_EQ(1376269312u, LibVersion());
    EXPECT_EQ(1, AnswerOne());
    EXPECT_EQ(tarvo::Text(IDS_LIBRARY_DESCRIPTION), LibDescription());
}

TEST_F(PluginModule, HasOneClass) {
    ASSERT_NE(nullptr, LibClassDesc(0));
    EXPECT_EQ(LibClassDesc(0), LibClassDesc(0));
    EXPECT_EQ(nullptr, LibClassDesc(1));
    EXPECT_EQ(nullptr, LibClassDesc(-1));
}

TEST_F(PluginModule, ClassHasItsFixedIdentity) {
    ClassDesc& descriptor = *LibClassDesc(0);
    EXPECT_EQ(4320u, descriptor.SuperClassID());
    EXPECT_TRUE(Class_ID(0x2E87AC90, 0x85FBF488) == descriptor.ClassID());
    EXPECT_TRUE(descriptor.IsPublic());
    EXPECT_STREQ(L"Tarvo_Rendering", descriptor.InternalName());
    EXPECT_EQ(tarvo::ModuleInstance(), descriptor.HInstance());
    EXPECT_EQ(tarvo::Text(IDS_CLASS_NAME), descriptor.ClassName());
    EXPECT_EQ(tarvo::Text(IDS_CLASS_CATEGORY), descriptor.Category());
}

TEST_F(PluginModule, TextsForTheHostSurviveOtherLookUps) {
    const std::wstring texts[] = {tarvo::Text(IDS_LIBRARY_DESCRIPTION), tarvo::Text(IDS_CLASS_NAME),
                                  tarvo::Text(IDS_CLASS_CATEGORY)};
    ClassDesc& descriptor = *LibClassDesc(0);
    const MCHAR* const pointers[] = {LibDescription(), descriptor.ClassName(), descriptor.Category()};
    tarvo::LookUpText(IDS_ABOUT_TEXT); // the shared buffer holds this one from now on
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(texts[i], pointers[i]);
    }
    EXPECT_EQ(pointers[1], descriptor.ClassName());
}

TEST_F(PluginModule, MissingTextsAreEmptyAndLoadedAgainLater) {
    tarvo::SetModuleInstance(nullptr);
    tarvo::Tarvo_RenderingClassDesc fresh;
    EXPECT_STREQ(L"", fresh.ClassName());
    EXPECT_STREQ(L"", fresh.Category());
    tarvo::SetModuleInstance(::GetModuleHandleW(nullptr));
    EXPECT_EQ(tarvo::Text(IDS_CLASS_NAME), fresh.ClassName());
}

TEST_F(PluginModule, EveryObjectIsNewAndOnTheHostsHeap) {
    GUP* first = static_cast<GUP*>(LibClassDesc(0)->Create());
    GUP* second = static_cast<GUP*>(LibClassDesc(0)->Create(TRUE));
    EXPECT_NE(first, second);
    EXPECT_EQ(2, new_heap_objects());
    first->DeleteThis();
    second->DeleteThis();
    EXPECT_EQ(0, new_heap_objects());
}

} // namespace

#include "scene/scene_file.h"

#include <gtest/gtest.h>

namespace {

using tarvo::IsUsableSceneName;

struct NameCase {
    const wchar_t* file_name;
    bool usable;
};

constexpr NameCase kNames[] = {
    {L"shot.max", true},
    {L"shot", true},
    {L"", true}, // a scene that was never saved
    {L".max", true},
    {L"my shot.max", true},
    {L" shot.max", true},
    {L"shot.v2.max", true},
    {L"shot.v2 .max", false},
    {L"shot .max", false},
    {L"shot ", false},
    {L" .max", false},
    {L"a..max", false},
    {L"a...max", false},
    {L"a.", true}, // the cut is before the last full stop
    {L"a..", false},
    {L"shot.max ", true}, // the blank is after the cut
    {L"shot\t.max", true},
    {L"\u0441\u0446\u0435\u043d\u0430.max", false},
    {L"scen\u0430.max", false},
    {L"\u03ff.max", true},
    {L"\u0400.max", false},
    {L"x\u052fx.max", false},
    {L"\u0530.max", true},
    {L"\u573a\u666f.max", true},
    {L"sc\u00e8ne.max", true},
    {L"shot.\u043c\u0430\u043a\u0441", true}, // only the name counts, not what follows its last full stop
};

TEST(UsableSceneName, StemsEndingWithABlankOrDotAndCyrillicStemsAreRefused) {
    for (const NameCase& name : kNames) {
        EXPECT_EQ(IsUsableSceneName(name.file_name), name.usable) << "case " << (&name - kNames);
    }
}

} // namespace

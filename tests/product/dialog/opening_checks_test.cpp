#include "dialog/opening_sequence.h"

#include <gtest/gtest.h>

namespace {

using tarvo::IsUsableSceneName;
using tarvo::IsVersionAccepted;

struct VersionCase {
    const wchar_t* lowest_accepted;
    bool accepted;
};

constexpr VersionCase kVersions[] = {
    {L"1.3.5", true},  {L"1.3.4", true}, {L"1.3", true},     {L"1.10.0", true},    {L"1.3.10", true},
    {L"1.3.49", true}, {L"0.9.9", true}, {L"10", false},     {L"-1", true},        {L"", true},
    {L"1.3.6", false}, {L"2", false},    {L"1.3.5 ", false}, {L"1.3.50", false},   {L"1.3.5.0", false},
    {L"1.4.0", false}, {L"9", false},    {L"v1.0", false},   {L"1.\u0663", false},
};

TEST(OpeningChecks, VersionsAreComparedAsTexts) {
    for (const VersionCase& version : kVersions) {
        EXPECT_EQ(IsVersionAccepted(version.lowest_accepted), version.accepted)
            << std::wstring(version.lowest_accepted).size() << " characters, case " << (&version - kVersions);
    }
}

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
    {L"shot.max ", true}, // the blank is behind the cut
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

TEST(OpeningChecks, SceneNamesThatTheFarmCannotTakeAreRefused) {
    for (const NameCase& name : kNames) {
        EXPECT_EQ(IsUsableSceneName(name.file_name), name.usable) << "case " << (&name - kNames);
    }
}

} // namespace

#include "submit/plugin_config.h"

#include <gtest/gtest.h>

namespace {

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

TEST(AcceptedVersion, VersionsAreComparedAsTexts) {
    for (const VersionCase& version : kVersions) {
        EXPECT_EQ(IsVersionAccepted(version.lowest_accepted), version.accepted)
            << std::wstring(version.lowest_accepted).size() << " characters, case " << (&version - kVersions);
    }
}

} // namespace

// Runs a test for each of the two dialog templates in each language, as the module's resources hold them.
#pragma once

#include "resources/resource_ids.h"
#include "tests/support/module_resources.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace support {

using TemplateCase = std::tuple<unsigned, LANGID>; // IDD_…, language

class TemplateTest : public ::testing::TestWithParam<TemplateCase> {
protected:
    unsigned name() const { return std::get<0>(GetParam()); }
    LANGID language() const { return std::get<1>(GetParam()); }
    bool is_main() const { return name() == IDD_MAIN; }

    void SetUp() override { ASSERT_FALSE(dialog.items.empty()) << "no such template"; }

    const DialogTemplate dialog = ReadDialogTemplate(std::get<0>(GetParam()), std::get<1>(GetParam()));
};

inline auto EveryTemplate() {
    return ::testing::Combine(::testing::Values(IDD_MAIN, IDD_CAMERA_EDIT),
                              ::testing::Values(kEnglish, kChinese));
}

inline std::string NameOfTemplateCase(const ::testing::TestParamInfo<TemplateCase>& which) {
    const bool main = std::get<0>(which.param) == IDD_MAIN;
    const bool english = std::get<1>(which.param) == kEnglish;
    return std::string(main ? "Main" : "Edit") + (english ? "English" : "Chinese");
}

} // namespace support

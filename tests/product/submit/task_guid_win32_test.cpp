// The task id when the system cannot make one.
#include "submit/client_link.h"

#include "tests/support/patched_import.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <objbase.h>

namespace {

HRESULT WINAPI no_guid(GUID* guid) {
    *guid = GUID{0x12345678, 0, 0, {}};
    return E_FAIL;
}

TEST(SystemTaskGuid, FailureIsEmptyAndLogged) {
    support::plugin_folder();
    const support::PatchedImport patch("ole32.dll", "CoCreateGuid", reinterpret_cast<void*>(&no_guid));
    ASSERT_TRUE(patch.installed());
    const std::size_t mark = support::log_mark("qfx_http");
    EXPECT_EQ(tarvo::NewTaskGuid(), L"");
    EXPECT_EQ(support::log_lines_since("qfx_http", mark),
              std::vector<std::string>{"[ERROR] The GUID generate failed!"});
}

} // namespace

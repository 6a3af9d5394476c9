#include "common/activation_context.h"

#include "tests/support/patched_import.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <string>
#include <vector>

namespace {

using support::PatchedImport;

constexpr ULONG_PTR kCookie = 77;
constexpr INT_PTR kDialogResult = 42;

// The intercepted calls, in short: context activated "(", refused "!", deactivated ")", classes, box, dialog.
std::string g_asked;
bool g_activates = true;
bool g_shows = true;
DWORD g_classes = 0;
int g_made = 0;
std::vector<HANDLE> g_activated;

decltype(&::CreateActCtxW) g_make = nullptr;

HANDLE WINAPI count_context(const ACTCTXW* description) {
    ++g_made;
    return g_make(description);
}

HANDLE WINAPI refuse_context(const ACTCTXW*) {
    ++g_made;
    ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return INVALID_HANDLE_VALUE;
}

BOOL WINAPI activate(HANDLE context, ULONG_PTR* cookie) {
    g_asked += g_activates ? "(" : "!";
    g_activated.push_back(context);
    *cookie = kCookie;
    ::SetLastError(g_activates ? ERROR_SUCCESS : ERROR_SXS_CANT_GEN_ACTCTX);
    return g_activates ? TRUE : FALSE;
}

// Overwrites the last error, as a call in a destructor may.
BOOL WINAPI deactivate(DWORD flags, ULONG_PTR cookie) {
    ::SetLastError(ERROR_BUSY);
    g_asked += flags == 0 && cookie == kCookie ? ")" : "?";
    return TRUE;
}

int WINAPI answer_box(HWND, LPCWSTR, LPCWSTR, UINT, WORD) {
    g_asked += "box";
    ::SetLastError(g_shows ? ERROR_SUCCESS : ERROR_INVALID_WINDOW_HANDLE);
    return g_shows ? IDYES : 0;
}

INT_PTR WINAPI answer_dialog(HINSTANCE, LPCWSTR, HWND, DLGPROC, LPARAM) {
    g_asked += "dialog";
    ::SetLastError(g_shows ? ERROR_SUCCESS : ERROR_CANNOT_FIND_WND_CLASS);
    return g_shows ? kDialogResult : -1;
}

BOOL WINAPI register_classes(const INITCOMMONCONTROLSEX* classes) {
    g_asked += "classes,";
    g_classes = classes->dwSize == sizeof *classes ? classes->dwICC : 0;
    return TRUE;
}

INT_PTR CALLBACK no_procedure(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

class ActivationContext : public ::testing::Test {
protected:
    ActivationContext() {
        g_asked.clear();
        g_activates = true;
        g_shows = true;
        g_classes = 0;
        g_made = 0;
        g_activated.clear();
        for (const PatchedImport* patch : {&activation_, &deactivation_, &box_, &dialog_, &classes_}) {
            EXPECT_TRUE(patch->installed());
        }
        log_mark_ = support::log_mark("qfx_ui");
    }

    std::vector<std::string> new_log_lines() const { return support::log_lines_since("qfx_ui", log_mark_); }

    static int show_box() {
        return tarvo::IsolatedMessageBox(nullptr, L"What is wrong.\n\nWhat to do.", L"caption", MB_YESNO, 1);
    }
    static INT_PTR show_dialog() { return tarvo::IsolatedDialogBox(102, nullptr, no_procedure, 0); }

private:
    PatchedImport activation_{"kernel32.dll", "ActivateActCtx", reinterpret_cast<void*>(&activate)};
    PatchedImport deactivation_{"kernel32.dll", "DeactivateActCtx", reinterpret_cast<void*>(&deactivate)};
    PatchedImport box_{"user32.dll", "MessageBoxExW", reinterpret_cast<void*>(&answer_box)};
    PatchedImport dialog_{"user32.dll", "DialogBoxParamW", reinterpret_cast<void*>(&answer_dialog)};
    PatchedImport classes_{"comctl32.dll", "InitCommonControlsEx",
                           reinterpret_cast<void*>(&register_classes)};
    std::size_t log_mark_ = 0;
};

// Must be the first test: later ones find the context already created.
TEST_F(ActivationContext, FailedCreationIsLoggedWithItsReasonAndTriedAgain) {
    {
        const PatchedImport refusal("kernel32.dll", "CreateActCtxW",
                                    reinterpret_cast<void*>(&refuse_context));
        ASSERT_TRUE(refusal.installed());
        const int answer = show_box();
        if (g_made == 0) {
            GTEST_SKIP() << "an earlier test had it made";
        }
        EXPECT_EQ(answer, 0);
        EXPECT_EQ(show_dialog(), -1);
        EXPECT_EQ(g_made, 2);
    }
    EXPECT_EQ(g_asked, "");
    const std::vector<std::string> expected = {
        "[ERROR] A message box could not be shown. System error 8: What is wrong.",
        "[ERROR] A dialog could not be shown. System error 8: 102"};
    EXPECT_EQ(new_log_lines(), expected);
    EXPECT_EQ(show_box(), IDYES);
}

TEST_F(ActivationContext, IsActiveDuringABoxAndADialogAndTheirResultsAreReturned) {
    EXPECT_EQ(show_box(), IDYES);
    EXPECT_EQ(g_asked, "(box)");
    EXPECT_EQ(show_dialog(), kDialogResult);
    EXPECT_EQ(g_asked, "(box)(classes,dialog)");
    EXPECT_TRUE(new_log_lines().empty());
}

TEST_F(ActivationContext, DialogRegistersTheControlClassesOfTheTemplates) {
    show_dialog();
    const DWORD wanted = ICC_LINK_CLASS | ICC_LISTVIEW_CLASSES | ICC_UPDOWN_CLASS;
    EXPECT_EQ(g_classes & wanted, wanted);
}

TEST_F(ActivationContext, BoxOrDialogThatCannotBeShownIsLogged) {
    g_shows = false;
    EXPECT_EQ(show_box(), 0);
    EXPECT_EQ(show_dialog(), -1);
    g_activates = false;
    show_box();
    show_dialog();
    const std::vector<std::string> expected = {
        "[ERROR] A message box could not be shown. System error 1400: What is wrong.",
        "[ERROR] A dialog could not be shown. System error 1407: 102",
        "[ERROR] A message box could not be shown. System error 14001: What is wrong.",
        "[ERROR] A dialog could not be shown. System error 14001: 102"};
    EXPECT_EQ(new_log_lines(), expected);
}

TEST_F(ActivationContext, FailedActivationShowsNoBoxAndReturnsZero) {
    g_activates = false;
    EXPECT_EQ(show_box(), 0);
    EXPECT_EQ(g_asked, "!");
}

TEST_F(ActivationContext, FailedActivationShowsNoDialogAndReturnsMinusOne) {
    g_activates = false;
    EXPECT_EQ(show_dialog(), -1);
    EXPECT_EQ(g_asked, "!");
}

TEST_F(ActivationContext, ActivationIsTriedAgainAfterAFailure) {
    g_activates = false;
    show_box();
    g_activates = true;
    EXPECT_EQ(show_box(), IDYES);
    EXPECT_EQ(g_asked, "!(box)");
}

// An earlier test in this process may already have created the context.
TEST_F(ActivationContext, IsCreatedOnceForAllBoxesAndDialogs) {
    g_make = ::CreateActCtxW;
    const PatchedImport count("kernel32.dll", "CreateActCtxW", reinterpret_cast<void*>(&count_context));
    ASSERT_TRUE(count.installed());
    show_box();
    EXPECT_LE(g_made, 1);
    g_made = 0;
    show_box();
    show_dialog();
    EXPECT_EQ(g_made, 0);
    ASSERT_EQ(g_activated.size(), 3u);
    EXPECT_NE(g_activated[0], INVALID_HANDLE_VALUE);
    EXPECT_EQ(g_activated, std::vector<HANDLE>(3, g_activated[0]));
}

} // namespace

#include "common/activation_context.h"

#include "tests/support/patched_import.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using tarvo_test::PatchedImport;

constexpr ULONG_PTR kCookie = 77;
constexpr INT_PTR kDialogResult = 42;

// What the system was asked for, in short: the context activated, refused, deactivated, the box, the dialog.
std::string g_asked;
bool g_activates = true;
int g_made = 0;
std::vector<HANDLE> g_activated;

decltype(&::CreateActCtxW) g_make = nullptr;

HANDLE WINAPI count_context(const ACTCTXW* description) {
    ++g_made;
    return g_make(description);
}

BOOL WINAPI activate(HANDLE context, ULONG_PTR* cookie) {
    g_asked += g_activates ? "(" : "!";
    g_activated.push_back(context);
    *cookie = kCookie;
    return g_activates ? TRUE : FALSE;
}

BOOL WINAPI deactivate(DWORD flags, ULONG_PTR cookie) {
    g_asked += flags == 0 && cookie == kCookie ? ")" : "?";
    return TRUE;
}

int WINAPI answer_box(HWND, LPCWSTR, LPCWSTR, UINT, WORD) {
    g_asked += "box";
    return IDYES;
}

INT_PTR WINAPI answer_dialog(HINSTANCE, LPCWSTR, HWND, DLGPROC, LPARAM) {
    g_asked += "dialog";
    return kDialogResult;
}

INT_PTR CALLBACK no_procedure(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

class ActivationContext : public ::testing::Test {
protected:
    ActivationContext() {
        g_asked.clear();
        g_activates = true;
        g_made = 0;
        g_activated.clear();
        for (const PatchedImport* patch : {&activation_, &deactivation_, &box_, &dialog_}) {
            EXPECT_TRUE(patch->installed());
        }
    }

    static int show_box() { return tarvo::IsolatedMessageBox(nullptr, L"text", L"caption", MB_YESNO, 1); }
    static INT_PTR show_dialog() { return tarvo::IsolatedDialogBox(102, nullptr, no_procedure, 0); }

private:
    PatchedImport activation_{"kernel32.dll", "ActivateActCtx", reinterpret_cast<void*>(&activate)};
    PatchedImport deactivation_{"kernel32.dll", "DeactivateActCtx", reinterpret_cast<void*>(&deactivate)};
    PatchedImport box_{"user32.dll", "MessageBoxExW", reinterpret_cast<void*>(&answer_box)};
    PatchedImport dialog_{"user32.dll", "DialogBoxParamW", reinterpret_cast<void*>(&answer_dialog)};
};

TEST_F(ActivationContext, IsActiveAroundABoxAndADialogWhoseAnswersComeBack) {
    EXPECT_EQ(show_box(), IDYES);
    EXPECT_EQ(g_asked, "(box)");
    EXPECT_EQ(show_dialog(), kDialogResult);
    EXPECT_EQ(g_asked, "(box)(dialog)");
}

TEST_F(ActivationContext, ABoxIsNotShownWithoutItAndAnswersZero) {
    g_activates = false;
    EXPECT_EQ(show_box(), 0);
    EXPECT_EQ(g_asked, "!");
}

TEST_F(ActivationContext, ADialogIsNotShownWithoutItAndAnswersMinusOne) {
    g_activates = false;
    EXPECT_EQ(show_dialog(), -1);
    EXPECT_EQ(g_asked, "!");
}

TEST_F(ActivationContext, ARefusalIsNotRemembered) {
    g_activates = false;
    show_box();
    g_activates = true;
    EXPECT_EQ(show_box(), IDYES);
    EXPECT_EQ(g_asked, "!(box)");
}

// Whatever ran before in this program may have had it made.
TEST_F(ActivationContext, IsMadeOnceForAllBoxesAndDialogs) {
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

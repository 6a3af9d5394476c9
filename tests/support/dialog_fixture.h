// For tests of the dialogs: the module's own templates shown as real windows, the texts and boxes behind
// them, the store and the plugin's ini file in a known state, and short names for what is asked of controls.
// Windows only.
#pragma once

#include "common/platform.h"
#include "common/string_table.h"
#include "common/text.h"
#include "common/win32_handles.h"
#include "dialog/ui_state.h"
#include "resources/resource_ids.h"
#include "scene/scene_data.h"
#include "tests/support/dialog_metrics.h"
#include "tests/support/test_boxes.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_host.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace support {

inline INT_PTR CALLBACK InertDialogProc(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

inline std::wstring field(HWND dialog, int id) {
    wchar_t text[1024] = {};
    ::GetDlgItemTextW(dialog, id, text, 1024);
    return text;
}

inline void type(HWND dialog, int id, const std::wstring& text) {
    ::SetDlgItemTextW(dialog, id, text.c_str());
}

inline int row_count(HWND list) {
    return static_cast<int>(::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
}

inline std::wstring cell(HWND list, int row, int column) {
    wchar_t text[1024] = {};
    LVITEMW item = {};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = 1024;
    ::SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return text;
}

inline unsigned row_state(HWND list, int row, unsigned mask) {
    return static_cast<unsigned>(::SendMessageW(list, LVM_GETITEMSTATE, static_cast<WPARAM>(row), mask));
}

inline bool is_ticked(HWND list, int row) {
    return row_state(list, row, LVIS_STATEIMAGEMASK) == 0x2000;
}

inline void set_row_state(HWND list, int row, unsigned state, unsigned mask) {
    LVITEMW item = {};
    item.state = state;
    item.stateMask = mask;
    ::SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

inline void tick(HWND list, int row, bool ticked = true) {
    set_row_state(list, row, ticked ? 0x2000 : 0x1000, LVIS_STATEIMAGEMASK);
}

// The ticks of all rows, "x" and "-".
inline std::string ticks(HWND list) {
    std::string all;
    for (int row = 0; row < row_count(list); ++row) {
        all += is_ticked(list, row) ? 'x' : '-';
    }
    return all;
}

struct Analysis {
    std::wstring name = L"C:/scenes/shot.max";
    std::vector<std::wstring> cameras = {L"Cam B", L"Cam A", L"Cam C"};
    std::wstring region = L"false";
    std::wstring corona; // the three limits as members, or nothing
    std::wstring missing_file;
    std::wstring gamma = L"1.8";

    std::wstring text() const {
        std::wstring list;
        for (const std::wstring& camera : cameras) {
            list += (list.empty() ? L"{\"name\": \"" : L", {\"name\": \"") + camera + L"\"}";
        }
        const std::wstring missing =
            missing_file.empty() ? L"" : L"\"missing_file\": [{\"path\": \"" + missing_file + L"\"}], ";
        const std::wstring limits = corona.empty() ? L"" : L"\"corona_setting\": {" + corona + L"}, ";
        return L"{" + missing + limits + L"\"name\": \"" + name + L"\", \"version\": \"21.0\", " +
               L"\"app_version\": \"2019\", \"is_region\": \"" + region + L"\", \"cameras\": [" + list +
               L"], \"image_width\": \"1500\", \"image_height\": \"1000\", \"start_frame\": \"7\", " +
               L"\"end_frame\": \"9\", \"image_format\": \"png\", \"gamma_out\": \"" + gamma + L"\"}";
    }
};

// While it lives, the first dialog of this thread that shows the given control is handed to `act` from inside
// its own message loop, and closed afterwards if it still stands.
class ModalDriver {
public:
    ModalDriver(int control, std::function<void(HWND)> act) : control_(control), act_(std::move(act)) {
        current() = this;
        timer_ = ::SetTimer(nullptr, 0, USER_TIMER_MINIMUM, on_timer);
    }
    ~ModalDriver() {
        ::KillTimer(nullptr, timer_);
        current() = nullptr;
    }
    ModalDriver(const ModalDriver&) = delete;
    ModalDriver& operator=(const ModalDriver&) = delete;

    bool has_acted() const { return has_acted_; }

private:
    static ModalDriver*& current() {
        static ModalDriver* driver = nullptr;
        return driver;
    }

    static BOOL CALLBACK match(HWND window, LPARAM found) {
        if (!::IsWindowVisible(window) || ::GetDlgItem(window, current()->control_) == nullptr) {
            return TRUE;
        }
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
    }

    static void CALLBACK on_timer(HWND, UINT, UINT_PTR timer, DWORD) {
        HWND dialog = nullptr;
        ::EnumThreadWindows(::GetCurrentThreadId(), match, reinterpret_cast<LPARAM>(&dialog));
        if (dialog == nullptr) {
            return;
        }
        ::KillTimer(nullptr, timer);
        current()->has_acted_ = true;
        current()->act_(dialog);
        if (::IsWindowVisible(dialog)) {
            ::SendMessageW(dialog, WM_CLOSE, 0, 0);
        }
    }

    int control_;
    std::function<void(HWND)> act_;
    UINT_PTR timer_ = 0;
    bool has_acted_ = false;
};

class DialogTest : public ::testing::Test {
protected:
    DialogTest() {
        tarvo::SetModuleInstance(::GetModuleHandleW(nullptr));
        register_host_controls();
        remove_ini(); // before the stores: the ini file decides where they log
        log_mark_ = log_mark("qfx_ui");
        reset_test_host();
        scene.set_num_blocks(1);
        scene.corona_limits = 0;
        scene.gamma_out = 2.2f;
        scene.ao_channel = false;
        scene.scene_path.clear();
        std::wstring text = Analysis().text();
        scene.set_analysis_text(text);
        scene.parse_analysis();
        scene.clear_cameras();
        ui.clear_selected_cameras();
        ui.sizeSyncBusy = false;
        log_mark_ = log_mark("qfx_ui");
    }

    ~DialogTest() override {
        for (HWND window : windows_) {
            ::DestroyWindow(window);
        }
        remove_ini();
        EXPECT_EQ(test_host().spinners_held, 0) << "a spinner was not released";
    }

    // A visible dialog from the module's template; EndDialog hides it.
    HWND show(int template_id, DLGPROC procedure, HWND owner = nullptr) {
        HWND dialog = ::CreateDialogParamW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(template_id), owner,
                                           procedure, 0);
        EXPECT_NE(dialog, nullptr) << "error " << ::GetLastError();
        windows_.insert(windows_.begin(), dialog);
        ::ShowWindow(dialog, SW_SHOWNA);
        return dialog;
    }

    static bool has_ended(HWND dialog) { return !::IsWindowVisible(dialog); }

    static std::string ini_file() { return plugin_folder() + "/script/qfx_plugin.ini"; }

    static void write_ini(const std::string& content) {
        tarvo::CreateFolder(tarvo::Utf8ToWide(plugin_folder() + "/script"));
        write_file(ini_file(), "[general]\r\n" + content);
        ::WritePrivateProfileStringW(nullptr, nullptr, nullptr, tarvo::Utf8ToWide(ini_file()).c_str());
    }

    static void remove_ini() {
        std::remove(ini_file().c_str());
        ::WritePrivateProfileStringW(nullptr, nullptr, nullptr, tarvo::Utf8ToWide(ini_file()).c_str());
    }

    // A client that is set up, a saved scene, and this analysis.
    static void let_it_open(const Analysis& analysis = Analysis()) {
        write_ini("ip=127.0.0.1\r\nport=1\r\nlowerversion=1.3.5\r\n");
        test_host().file_name = L"shot.max";
        test_host().file_path = L"C:\\scenes\\shot.max";
        test_host().script_result = true;
        test_host().script_text = analysis.text();
    }

    // What was logged on "qfx_ui" since the test began, or since the last call.
    std::vector<std::string> new_log_lines() {
        std::vector<std::string> lines = log_lines_since("qfx_ui", log_mark_);
        log_mark_ += lines.size();
        return lines;
    }

    // The box was this one: text, caption, style, owner, and the language of the texts' own switch.
    void expect_box(std::size_t index, HWND owner, unsigned text_id, unsigned caption_id, unsigned style) {
        ASSERT_LT(index, boxes.shown.size());
        const TestBox& box = boxes.shown[index];
        EXPECT_EQ(box.owner, owner);
        EXPECT_FALSE(box.text.empty());
        EXPECT_EQ(box.text, tarvo::Text(text_id));
        EXPECT_EQ(box.caption, tarvo::Text(caption_id));
        EXPECT_EQ(box.style, style);
        EXPECT_EQ(box.language, tarvo::Text(IDS_LANGUAGE_SWITCH) == L"0" ? 1033 : 1);
    }

    ActiveManifest manifest_;
    TestBoxes boxes;
    tarvo::SceneData& scene = scene_without_ini();
    tarvo::UiState& ui = tarvo::UiState::instance();

private:
    static tarvo::SceneData& scene_without_ini() {
        remove_ini();
        return tarvo::SceneData::instance();
    }

    std::vector<HWND> windows_;
    std::size_t log_mark_ = 0;
};

} // namespace support

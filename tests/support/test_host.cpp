#include "tests/support/test_host.h"

#ifdef _WIN32
#include <windows.h>
#endif

#include <cwchar>

namespace {

#ifdef _WIN32
tarvo::WindowHandle dialog_item(tarvo::WindowHandle dialog, int id) {
    return ::GetDlgItem(dialog, id);
}
void write_field(tarvo::WindowHandle edit, const std::wstring& text) {
    ::SetWindowTextW(edit, text.c_str());
}
#else
tarvo::WindowHandle dialog_item(tarvo::WindowHandle, int) {
    return nullptr;
}
void write_field(tarvo::WindowHandle, const std::wstring&) {}
#endif

// Like the host's, it writes a new value into the linked field, which may tell the dialog.
class TestSpinner : public tarvo::RatioSpinner {
public:
    TestSpinner(TestHost& host, tarvo::WindowHandle control) : host_(host), state_(host.spinners[control]) {
        ++host_.spinners_held;
    }
    ~TestSpinner() override { --host_.spinners_held; }

    void link_to_edit(tarvo::WindowHandle edit) override { state_.edit = edit; }
    bool is_enabled() override { return state_.enabled; }
    void enable() override { state_.enabled = true; }
    void disable() override { state_.enabled = false; }
    float value() override { return state_.value; }
    void set_value(float value) override {
        state_.value = value;
        if (state_.limited && value > state_.maximum) {
            state_.value = state_.maximum;
        } else if (state_.limited && !(value >= state_.minimum)) {
            state_.value = state_.minimum;
        }
        wchar_t text[64];
        std::swprintf(text, sizeof text / sizeof *text, L"%.3f", static_cast<double>(state_.value));
        write_field(state_.edit, text);
    }

private:
    TestHost& host_;
    TestSpinnerState& state_;
};

} // namespace

bool TestHost::save_as(const std::wstring& path) {
    saved_as.push_back(path);
    if (save_as_result) {
        file_path = path;
        file_name = path.substr(path.find_last_of(L"\\/") + 1);
    }
    return save_as_result;
}

bool TestHost::run_script(const std::wstring& command, tarvo::ScriptResult& result) {
    scripts.push_back(command);
    result.has_text = script_result && has_text;
    result.text = result.has_text ? script_text : std::wstring();
    return script_result;
}

std::unique_ptr<tarvo::RatioSpinner> TestHost::set_up_ratio_spinner(tarvo::WindowHandle dialog,
                                                                    int spinner_id, int edit_id,
                                                                    float minimum, float maximum, float value,
                                                                    float step) {
    std::unique_ptr<tarvo::RatioSpinner> spinner = ratio_spinner(dialog_item(dialog, spinner_id));
    if (spinner) {
        ++spinners_set_up;
        TestSpinnerState& state = spinners[dialog_item(dialog, spinner_id)];
        state.limited = true;
        state.minimum = minimum;
        state.maximum = maximum;
        state.step = step;
        spinner->link_to_edit(dialog_item(dialog, edit_id));
        spinner->set_value(value);
    }
    return spinner;
}

std::unique_ptr<tarvo::RatioSpinner> TestHost::ratio_spinner(tarvo::WindowHandle control) {
    if (!has_spinners || control == nullptr) {
        return nullptr;
    }
    return std::unique_ptr<tarvo::RatioSpinner>(new TestSpinner(*this, control));
}

TestHost& test_host() {
    static TestHost host;
    return host;
}

void reset_test_host() {
    test_host() = TestHost();
}

#ifdef _WIN32
void register_host_controls() {
    WNDCLASSW description = {};
    description.lpfnWndProc = ::DefWindowProcW;
    description.hInstance = ::GetModuleHandleW(nullptr);
    description.lpszClassName = L"SpinnerControl";
    ::RegisterClassW(&description); // a second time fails, and does no harm

    WNDCLASSW edit = {};
    ::GetClassInfoW(nullptr, L"EDIT", &edit);
    edit.hInstance = ::GetModuleHandleW(nullptr);
    edit.lpszClassName = L"CustEdit";
    ::RegisterClassW(&edit);
}
#endif

namespace tarvo {

Host& CurrentHost() {
    return test_host();
}

} // namespace tarvo

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

} // namespace

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

// The double of the host's control: the name under which host.h knows it.
class ISpinnerControl {
public:
    explicit ISpinnerControl(TestSpinnerState& spinner) : state(spinner) {}
    TestSpinnerState& state;
};

namespace tarvo {

WindowHandle HostMainWindow() {
    return nullptr;
}

std::wstring SceneFileName() {
    return test_host().file_name;
}

std::wstring SceneFilePath() {
    return test_host().file_path;
}

void SaveScene() {
    ++test_host().save_count;
}

bool SaveSceneAs(const std::wstring& path) {
    TestHost& host = test_host();
    host.saved_as.push_back(path);
    if (host.save_as_result) {
        host.file_path = path;
        host.file_name = path.substr(path.find_last_of(L"\\/") + 1);
    }
    return host.save_as_result;
}

bool RunScript(const std::wstring& command, ScriptResult& result) {
    TestHost& host = test_host();
    if (host.on_script) {
        host.on_script();
    }
    host.scripts.push_back(command);
    result.has_text = host.script_result && host.has_text;
    result.text = result.has_text ? host.script_text : std::wstring();
    return host.script_result;
}

RatioSpinner::~RatioSpinner() {
    --test_host().spinners_held;
    delete control_;
}

void RatioSpinner::link_to_edit(WindowHandle edit) {
    control_->state.edit = edit;
}

bool RatioSpinner::is_enabled() {
    return control_->state.enabled;
}

void RatioSpinner::enable() {
    control_->state.enabled = true;
}

void RatioSpinner::disable() {
    control_->state.enabled = false;
}

float RatioSpinner::value() {
    return control_->state.value;
}

// Like the host's, it writes a new value into the linked field, which may tell the dialog.
void RatioSpinner::set_value(float value) {
    TestSpinnerState& state = control_->state;
    state.value = value;
    if (state.limited && value > state.maximum) {
        state.value = state.maximum;
    } else if (state.limited && !(value >= state.minimum)) {
        state.value = state.minimum;
    }
    wchar_t text[64];
    std::swprintf(text, sizeof text / sizeof *text, L"%.3f", static_cast<double>(state.value));
    write_field(state.edit, text);
}

std::unique_ptr<RatioSpinner> SetUpRatioSpinner(WindowHandle dialog, int spinner_id, int edit_id,
                                                float minimum, float maximum, float value, float step) {
    std::unique_ptr<RatioSpinner> spinner = RatioSpinnerOf(dialog_item(dialog, spinner_id));
    if (spinner) {
        ++test_host().spinners_set_up;
        TestSpinnerState& state = test_host().spinners[dialog_item(dialog, spinner_id)];
        state.limited = true;
        state.minimum = minimum;
        state.maximum = maximum;
        state.step = step;
        spinner->link_to_edit(dialog_item(dialog, edit_id));
        spinner->set_value(value);
    }
    return spinner;
}

std::unique_ptr<RatioSpinner> RatioSpinnerOf(WindowHandle control) {
    TestHost& host = test_host();
    if (!host.has_spinners || control == nullptr) {
        return nullptr;
    }
    ++host.spinners_held;
    return std::unique_ptr<RatioSpinner>(new RatioSpinner(new ISpinnerControl(host.spinners[control])));
}

} // namespace tarvo

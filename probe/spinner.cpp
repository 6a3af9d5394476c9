// The spinner as the camera edit dialog uses it, linked to a plain edit control and to the host's own; and a
// dialog procedure that throws.
#include "host/host.h"
#include "probe/actions.h"
#include "probe/questions.h"
#include "probe/report.h"
#include "probe/resource_ids.h"

#include "host/begin_host_headers.h"

#include <max.h>

#include <custcont.h>

#include "host/end_host_headers.h"

#include <stdexcept>

namespace tarvo_probe {

namespace {

struct Heard {
    int spinner_changes = 0;
    int spinner_id = 0;
    int edit_changes = 0;
    bool throws = false;
} g_heard;

INT_PTR CALLBACK procedure(HWND, UINT message, WPARAM w_param, LPARAM) {
    if (message == CC_SPINNER_CHANGE) {
        ++g_heard.spinner_changes;
        g_heard.spinner_id = LOWORD(w_param);
    } else if (message == WM_COMMAND && HIWORD(w_param) == EN_CHANGE) {
        ++g_heard.edit_changes;
    } else if (message == WM_COMMAND && LOWORD(w_param) == IDC_THROWING_BUTTON && g_heard.throws) {
        throw std::out_of_range("probe");
    }
    return FALSE;
}

class Dialog {
public:
    explicit Dialog(HINSTANCE module)
        : window_(::CreateDialogParamW(module, MAKEINTRESOURCEW(IDD_PROBE),
                                       static_cast<HWND>(tarvo::HostMainWindow()), procedure, 0)) {}
    ~Dialog() {
        if (window_ != nullptr) {
            ::DestroyWindow(window_);
        }
    }
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    HWND window() const { return window_; }
    HWND control(int id) const { return ::GetDlgItem(window_, id); }
    std::wstring text(int id) const {
        wchar_t text[64] = {};
        ::GetDlgItemTextW(window_, id, text, 64);
        return text;
    }
    void set_text(int id, const wchar_t* text) const { ::SetDlgItemTextW(window_, id, text); }

private:
    HWND window_;
};

// The value in hundredths: no digits of the compiler's choice in the report.
long long hundredths(float value) {
    return static_cast<long long>(static_cast<double>(value) * 100.0 + (value < 0 ? -0.5 : 0.5));
}

void ask_changes(const std::string& key, const Dialog& dialog, int edit, tarvo::RatioSpinner& spinner) {
    Report& report = TheReport();
    g_heard = Heard();
    spinner.set_value(2.5f);
    report.line(key + ".set_text", dialog.text(edit));
    report.number(key + ".set_changes", g_heard.spinner_changes);
    report.number(key + ".set_edit_changes", g_heard.edit_changes);
    dialog.set_text(edit, L"1.25");
    report.number(key + ".typed_value", hundredths(spinner.value()));
    dialog.set_text(edit, L"0");
    report.number(key + ".typed_below", hundredths(spinner.value()));
    dialog.set_text(edit, L"x");
    report.number(key + ".typed_nonsense", hundredths(spinner.value()));
    spinner.disable();
    report.flag(key + ".disabled", !spinner.is_enabled());
    report.flag(key + ".edit_disabled", ::IsWindowEnabled(dialog.control(edit)) == FALSE);
    spinner.enable();
    report.flag(key + ".enabled_again",
                spinner.is_enabled() && ::IsWindowEnabled(dialog.control(edit)) != FALSE);
}

void ask_spinner(const std::string& key, const Dialog& dialog, int edit, int spin) {
    Report& report = TheReport();
    report.object(key + ".edit", dialog.control(edit));
    report.object(key + ".control", dialog.control(spin));
    g_heard = Heard();
    const std::unique_ptr<tarvo::RatioSpinner> made =
        tarvo::SetUpRatioSpinner(dialog.window(), spin, edit, 0.001f, 1000.0f, 1.5f, 0.1f);
    report.object(key + ".set_up", made.get());
    if (made == nullptr) {
        return;
    }
    report.line(key + ".first_text", dialog.text(edit));
    report.number(key + ".first_value", hundredths(made->value()));
    report.number(key + ".first_changes", g_heard.spinner_changes);
    const std::unique_ptr<tarvo::RatioSpinner> again = tarvo::RatioSpinnerOf(dialog.control(spin));
    report.object(key + ".second_interface", again.get());
    made->link_to_edit(dialog.control(edit));
    ask_changes(key, dialog, edit, *made);
}

} // namespace

void AskSpinner(HINSTANCE module) noexcept {
    Ask("spinner", [&] {
        const Dialog dialog(module);
        TheReport().object("spinner.dialog", dialog.window());
        if (dialog.window() == nullptr) {
            return;
        }
        ask_spinner("spinner.plain", dialog, IDC_PLAIN_EDIT, IDC_PLAIN_SPIN);
        ask_spinner("spinner.host", dialog, IDC_HOST_EDIT, IDC_HOST_SPIN);
        TheReport().line("spinner.changes_from",
                         g_heard.spinner_id == IDC_HOST_SPIN ? "its own id" : "another id");
    });
}

// The click is sent, as the product gets it from its own button.
void AskExceptions(HINSTANCE module) noexcept {
    AskThrowingAction();
    Ask("exception.dialog", [&] {
        const Dialog dialog(module);
        if (dialog.window() == nullptr) {
            return;
        }
        g_heard = Heard();
        g_heard.throws = true;
        TheReport().line("exception.dialog.asked", "yes");
        try {
            ::SendMessageW(dialog.control(IDC_THROWING_BUTTON), BM_CLICK, 0, 0);
            TheReport().line("exception.dialog", "stopped by Windows");
        } catch (const std::out_of_range&) {
            TheReport().line("exception.dialog", "passed through Windows");
        }
        g_heard.throws = false;
    });
}

} // namespace tarvo_probe

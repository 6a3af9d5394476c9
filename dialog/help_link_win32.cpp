#include "dialog/help_link.h"

#include "common/platform.h"
#include "common/text.h"
#include "dialog/ui_state.h"

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <algorithm>

namespace tarvo {

namespace {

// Where the setup lays the package, below the machine-wide application-data folder.
constexpr const wchar_t* kPackageFolder = L"\\Autodesk\\ApplicationPlugins\\TarvoRendering\\";
// ShellExecuteW answers with more than this when it has started something.
constexpr INT_PTR kMostErrors = 32;

// A plain path and no "file:" address: nothing in it needs escaping, whatever the folder is called.
std::wstring installed_page(std::wstring page) {
    std::replace(page.begin(), page.end(), L'/', L'\\');
    return CommonAppDataFolder() + kPackageFolder + page;
}

} // namespace

void SetHelpLinkTarget(HWND dialog, int link) {
    LITEM item = {};
    item.mask = LIF_ITEMINDEX | LIF_URL;
    if (::SendDlgItemMessageW(dialog, link, LM_GETITEM, 0, reinterpret_cast<LPARAM>(&item)) == FALSE) {
        return;
    }
    const std::wstring page = item.szUrl;
    const std::wstring path = installed_page(page);
    if (page.empty() || page.find(L':') != std::wstring::npos || path.size() >= L_MAX_URL_LENGTH) {
        return;
    }
    path.copy(item.szUrl, path.size());
    item.szUrl[path.size()] = L'\0';
    item.mask = LIF_ITEMINDEX | LIF_URL;
    ::SendDlgItemMessageW(dialog, link, LM_SETITEM, 0, reinterpret_cast<LPARAM>(&item));
}

void OpenLinkTarget(HWND dialog, const std::wstring& target) {
    const HINSTANCE started = ::ShellExecuteW(dialog, L"open", target.c_str(), nullptr, nullptr, SW_SHOW);
    const INT_PTR result = reinterpret_cast<INT_PTR>(started);
    if (result <= kMostErrors) {
        UiState::instance().log_channel().Write("The help could not be opened. Error " +
                                                    std::to_string(result) + ": " + WideToLocale(target),
                                                kError);
    }
}

} // namespace tarvo

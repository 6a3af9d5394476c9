#include "standin/stage/screenshot.h"

#include <objidl.h>

#include <gdiplus.h>

#include <algorithm>
#include <vector>

namespace stage {

namespace {

// {557CF406-1A04-11D3-9A73-0000F81EF32E}: the PNG encoder.
const CLSID kPngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

class GdiPlus {
public:
    GdiPlus() {
        Gdiplus::GdiplusStartupInput input;
        started_ = Gdiplus::GdiplusStartup(&token_, &input, nullptr) == Gdiplus::Ok;
    }
    ~GdiPlus() {
        if (started_) {
            Gdiplus::GdiplusShutdown(token_);
        }
    }
    GdiPlus(const GdiPlus&) = delete;
    GdiPlus& operator=(const GdiPlus&) = delete;
    bool started() const { return started_; }

private:
    ULONG_PTR token_ = 0;
    bool started_ = false;
};

bool save_png(HBITMAP picture, const std::wstring& file) {
    const GdiPlus library;
    if (!library.started()) {
        return false;
    }
    Gdiplus::Bitmap bitmap(picture, nullptr);
    return bitmap.Save(file.c_str(), &kPngEncoder, nullptr) == Gdiplus::Ok;
}

RECT area_of(HWND window) {
    RECT area = {};
    ::GetWindowRect(window, &area);
    return area;
}

// A window's own surface has all of it, also where others cover it. Later windows are on top.
bool copy_windows(const std::vector<HWND>& windows, HDC target, const RECT& area) {
    bool all_copied = true;
    for (HWND window : windows) {
        const RECT own = area_of(window);
        const HDC source = ::GetWindowDC(window);
        const BOOL copied = ::BitBlt(target, own.left - area.left, own.top - area.top, own.right - own.left,
                                     own.bottom - own.top, source, 0, 0, SRCCOPY);
        ::ReleaseDC(window, source);
        all_copied = all_copied && copied != FALSE;
    }
    return all_copied;
}

bool save_area(const std::vector<HWND>& windows, const RECT& area, const std::wstring& file) {
    for (HWND window : windows) {
        ::RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    }
    const HDC screen = ::GetDC(nullptr);
    const HDC memory = ::CreateCompatibleDC(screen);
    const HBITMAP picture = ::CreateCompatibleBitmap(screen, area.right - area.left, area.bottom - area.top);
    const HGDIOBJ before = ::SelectObject(memory, picture);
    const bool copied = copy_windows(windows, memory, area);
    ::SelectObject(memory, before);
    const bool saved = copied && save_png(picture, file);
    ::DeleteObject(picture);
    ::DeleteDC(memory);
    ::ReleaseDC(nullptr, screen);
    return saved;
}

} // namespace

bool take_screenshot(HWND window, const std::wstring& file) {
    return save_area({window}, area_of(window), file);
}

bool take_menu_screenshot(HWND frame, HWND menu, const std::wstring& file) {
    constexpr LONG kMargin = 30; // pixels
    RECT area = area_of(frame);
    const RECT below = area_of(menu);
    area.right = std::min(area.right, below.right + kMargin);
    area.bottom = std::min(area.bottom, below.bottom + kMargin);
    return save_area({frame, menu}, area, file);
}

} // namespace stage

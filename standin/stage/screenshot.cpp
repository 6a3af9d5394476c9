#include "standin/stage/screenshot.h"

#include <objidl.h>

#include <gdiplus.h>

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
    RECT area = {0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
    if (window != nullptr) {
        ::GetWindowRect(window, &area);
    }
    return area;
}

// The window's own surface holds all of it, covered or not.
bool copy_picture(HWND window, HDC target, const SIZE& size) {
    const HDC source = window == nullptr ? ::GetDC(nullptr) : ::GetWindowDC(window);
    const BOOL copied = ::BitBlt(target, 0, 0, size.cx, size.cy, source, 0, 0, SRCCOPY);
    ::ReleaseDC(window, source);
    return copied != FALSE;
}

} // namespace

bool take_screenshot(HWND window, const std::wstring& file, SIZE& size) {
    if (window != nullptr) {
        ::RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    }
    const RECT area = area_of(window);
    size = {area.right - area.left, area.bottom - area.top};
    const HDC screen = ::GetDC(nullptr);
    const HDC memory = ::CreateCompatibleDC(screen);
    const HBITMAP picture = ::CreateCompatibleBitmap(screen, size.cx, size.cy);
    const HGDIOBJ before = ::SelectObject(memory, picture);
    const bool copied = copy_picture(window, memory, size);
    ::SelectObject(memory, before);
    const bool saved = copied && save_png(picture, file);
    ::DeleteObject(picture);
    ::DeleteDC(memory);
    ::ReleaseDC(nullptr, screen);
    return saved;
}

} // namespace stage

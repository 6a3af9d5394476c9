#include "strclass.h"

#include <cwchar>

WStr::WStr() : text_(nullptr) {}

WStr::WStr(const wchar_t* text) : text_(nullptr) {
    assign(text);
}

WStr::WStr(const WStr& other) : MaxHeapOperators(), text_(nullptr) {
    assign(other.text_);
}

WStr::~WStr() {
    delete[] text_;
}

WStr& WStr::operator=(const WStr& other) {
    if (this != &other) {
        assign(other.text_);
    }
    return *this;
}

WStr& WStr::operator=(const wchar_t* text) {
    assign(text);
    return *this;
}

const wchar_t* WStr::data() const {
    return text_ == nullptr ? L"" : text_;
}

int WStr::Length() const {
    return static_cast<int>(std::wcslen(data()));
}

bool WStr::operator==(const WStr& other) const {
    return *this == other.data();
}

bool WStr::operator==(const wchar_t* text) const {
    return text != nullptr && std::wcscmp(data(), text) == 0;
}

void WStr::assign(const wchar_t* text) {
    wchar_t* copy = nullptr;
    if (text != nullptr && *text != L'\0') {
        const std::size_t size = std::wcslen(text) + 1;
        copy = new wchar_t[size];
        std::wmemcpy(copy, text, size);
    }
    delete[] text_; // only now: `text` may be a part of it
    text_ = copy;
}

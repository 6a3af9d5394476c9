// The host's side of the classes that a plug-in uses and derives from.
#include "guplib.h"
#include "ifnpub.h"
#include "iparamb2.h"

#include <cwchar>

InterfaceServer::InterfaceServer() {}
InterfaceServer::~InterfaceServer() {}

BaseInterfaceServer::BaseInterfaceServer() {}
BaseInterfaceServer::~BaseInterfaceServer() {}

ClassDesc::ClassDesc() {}
ClassDesc::~ClassDesc() {}
const MCHAR* ClassDesc::InternalName() {
    return nullptr;
}
HINSTANCE ClassDesc::HInstance() {
    return nullptr;
}

ClassDesc2::ClassDesc2() {}
ClassDesc2::~ClassDesc2() {}
int ClassDesc2::NumParamBlockDescs() {
    return 0;
}

GUP::GUP() {}
GUP::~GUP() {}

FPValue::FPValue() {
    Init();
}
FPValue::~FPValue() {
    Free();
}

void FPValue::Init() {
    type = TYPE_VOID;
    tstr = nullptr;
}

void FPValue::Free() {
    if (type == TYPE_TSTR) {
        delete tstr;
    }
    Init();
}

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
    delete[] text_; // after the copy: `text` may be a part of it
    text_ = copy;
}

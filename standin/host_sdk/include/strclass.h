// The host's wide string. The text never is a null pointer.
#pragma once

#include "maxheap.h"

typedef wchar_t MCHAR;

#define _M(text) L##text

class UtilExport WStr : public MaxHeapOperators {
public:
    WStr();
    WStr(const wchar_t* text);
    WStr(const WStr& other);
    ~WStr();

    WStr& operator=(const WStr& other);
    WStr& operator=(const wchar_t* text);

    const wchar_t* data() const;
    operator const wchar_t*() const { return data(); }
    int Length() const;

    bool operator==(const WStr& other) const;
    bool operator==(const wchar_t* text) const;

private:
    void assign(const wchar_t* text);

    wchar_t* text_; // null: empty
};

typedef WStr TSTR;
typedef WStr MSTR;

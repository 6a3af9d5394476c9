// The value that a script returns.
#pragma once

#include "strclass.h"

#include <windows.h>

enum ParamType2 {
    TYPE_INT,
    TYPE_FLOAT,
    TYPE_BOOL,
    TYPE_STRING,
    TYPE_FILENAME,
    TYPE_TSTR,
    TYPE_VALUE,
    TYPE_VOID
};

class CoreExport FPValue : public MaxHeapOperators {
public:
    FPValue();
    ~FPValue();
    FPValue(const FPValue&) = delete;
    FPValue& operator=(const FPValue&) = delete;

    void Init();
    void Free();

    ParamType2 type;
    union {
        int i;
        float f;
        BOOL b;
        const MCHAR* s; // the script's own text: the next script frees it
        TSTR* tstr;     // this value owns it
    };
};

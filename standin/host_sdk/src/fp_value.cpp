#include "ifnpub.h"

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

// The global utility plug-in.
#pragma once

#include "plugapi.h"

#define GUPRESULT_KEEP 0x00

class GUPExport GUP : public InterfaceServer {
public:
    GUP();
    ~GUP() override;

    virtual DWORD Start() = 0;
    virtual void Stop() = 0;
    virtual void DeleteThis() = 0;
};

// The global utility plug-in.
#pragma once

#include "baseinterface.h"
#include "plugapi.h"

#define GUPRESULT_KEEP 0x00
#define GUPRESULT_NOKEEP 0x01
#define GUPRESULT_ABORT 0x03

class GUPExport GUP : public InterfaceServer {
public:
    GUP();
    ~GUP() override;

    virtual DWORD Start() = 0;
    virtual void Stop() = 0;
    virtual void DeleteThis() = 0;
};

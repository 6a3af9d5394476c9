// Roots of the host's interface classes.
#pragma once

#include "maxheap.h"

class UtilExport InterfaceServer : public MaxHeapOperators {
public:
    InterfaceServer();
    virtual ~InterfaceServer();
};

class UtilExport BaseInterfaceServer : public InterfaceServer {
public:
    BaseInterfaceServer();
    ~BaseInterfaceServer() override;
};

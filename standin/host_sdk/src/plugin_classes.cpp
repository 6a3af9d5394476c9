// The host's side of the classes that a plug-in derives from.
#include "guplib.h"
#include "iparamb2.h"

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

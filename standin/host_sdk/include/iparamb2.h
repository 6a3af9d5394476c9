// The class descriptor with parameter blocks; here it has none.
#pragma once

#include "plugapi.h"

class PB2Export ClassDesc2 : public ClassDesc {
public:
    ClassDesc2();
    ~ClassDesc2() override;

    virtual int NumParamBlockDescs();
};

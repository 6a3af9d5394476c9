// What a plug-in module tells the host about its classes.
#pragma once

#include "maxheap.h"
#include "strclass.h"

#include <windows.h>

typedef ULONG SClass_ID;

#define GUP_CLASS_ID 0x10E0

class Class_ID {
public:
    Class_ID(ULONG part_a, ULONG part_b) : part_a_(part_a), part_b_(part_b) {}

    ULONG PartA() const { return part_a_; }
    ULONG PartB() const { return part_b_; }
    bool operator==(const Class_ID& other) const {
        return part_a_ == other.part_a_ && part_b_ == other.part_b_;
    }

private:
    ULONG part_a_;
    ULONG part_b_;
};

class CoreExport ClassDesc : public MaxHeapOperators {
public:
    ClassDesc();
    virtual ~ClassDesc();

    virtual int IsPublic() = 0;
    virtual void* Create(BOOL loading = FALSE) = 0;
    virtual const MCHAR* ClassName() = 0;
    virtual SClass_ID SuperClassID() = 0;
    virtual Class_ID ClassID() = 0;
    virtual const MCHAR* Category() = 0;

    virtual const MCHAR* InternalName();
    virtual HINSTANCE HInstance();
};

// Base of classes whose objects have an identity: neither copied nor moved.
#pragma once

class qfx_Noncopyable {
public:
    qfx_Noncopyable() = default;
    qfx_Noncopyable(const qfx_Noncopyable&) = delete;
    qfx_Noncopyable& operator=(const qfx_Noncopyable&) = delete;
    virtual ~qfx_Noncopyable() = default;
};

// A text of the string table for the host, which keeps the pointer: it stays valid as long as this object,
// whatever is looked up afterwards.
#pragma once

#include "common/string_table.h"

#include <string>

namespace tarvo {

class KeptText {
public:
    explicit KeptText(unsigned id) : id_(id) {}
    KeptText(const KeptText&) = delete;
    KeptText& operator=(const KeptText&) = delete;

    // Never null; empty as long as the text is not there.
    const wchar_t* get() {
        if (text_.empty()) {
            text_ = Text(id_);
        }
        return text_.c_str();
    }

private:
    unsigned id_;
    std::wstring text_;
};

} // namespace tarvo

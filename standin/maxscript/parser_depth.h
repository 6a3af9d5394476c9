// Counts how deep expressions stand inside each other while they are read. Internal to the parser.
#pragma once

#include "standin/maxscript/parser.h"

namespace maxscript {

class Parser::Depth {
public:
    explicit Depth(Parser& parser);
    ~Depth();
    Depth(const Depth&) = delete;
    Depth& operator=(const Depth&) = delete;

private:
    // Each level takes a dozen frames of the machine's stack.
    static constexpr int kDeepest = 120;

    Parser& parser_;
};

} // namespace maxscript

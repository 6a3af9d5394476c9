// Sets of numbers. Internal to the language.
#pragma once

#include "standin/maxscript/engine.h"

namespace maxscript {

// Indices count from 0 here; scripts count from 1.
void set_bit(Engine& engine, BitArrayObject& array, std::size_t index, bool on);
Text bit_array_text(const BitArrayObject& array);

} // namespace maxscript

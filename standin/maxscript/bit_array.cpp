#include "standin/maxscript/bit_array.h"

namespace maxscript {

void set_bit(Engine& engine, BitArrayObject& array, std::size_t index, bool on) {
    if (index >= kMostElements) {
        engine.stop_at_limit(u"a bit array grows too large");
    }
    if (index >= array.bits.size()) {
        engine.charge(index - array.bits.size());
        array.bits.resize(index + 1);
    }
    array.bits[index] = on;
}

Text bit_array_text(const BitArrayObject& array) {
    Text text = u"#{";
    for (std::size_t i = 0; i < array.bits.size(); ++i) {
        if (!array.bits[i]) {
            continue;
        }
        const std::size_t first = i;
        while (i + 1 < array.bits.size() && array.bits[i + 1]) {
            ++i;
        }
        text += (text.size() > 2 ? u", " : u"") + text_from_number(static_cast<std::int64_t>(first) + 1);
        if (i > first) {
            text += u".." + text_from_number(static_cast<std::int64_t>(i) + 1);
        }
    }
    return text + u"}";
}

} // namespace maxscript

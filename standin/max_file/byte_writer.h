// Builds the bytes of a scene file: little-endian numbers, texts, chunks inside chunks.
#pragma once

#include "standin/max_file/scene_reader.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace max_file {

class ByteWriter {
public:
    const ByteBuffer& bytes() const { return bytes_; }
    std::size_t size() const { return bytes_.size(); }

    template <class Unsigned>
    ByteWriter& number(Unsigned value) {
        for (std::size_t index = 0; index < sizeof(Unsigned); ++index) {
            bytes_.push_back(static_cast<std::uint8_t>(static_cast<std::uint64_t>(value) >> (8 * index)));
        }
        return *this;
    }
    ByteWriter& u16(std::uint16_t value) { return number(value); }
    ByteWriter& u32(std::uint32_t value) { return number(value); }

    ByteWriter& raw(const ByteBuffer& bytes) {
        std::copy(bytes.begin(), bytes.end(), std::back_inserter(bytes_));
        return *this;
    }
    ByteWriter& utf16(const std::wstring& text) {
        for (const wchar_t unit : text) {
            u16(static_cast<std::uint16_t>(unit));
        }
        return *this;
    }
    ByteWriter& align(std::size_t to) {
        bytes_.resize((bytes_.size() + to - 1) / to * to);
        return *this;
    }

    // Sizes count the six bytes of the header; the top bit marks a container.
    ByteWriter& chunk(std::uint16_t id, const ByteBuffer& content) { return header(id, content, 0); }
    ByteWriter& container(std::uint16_t id, const ByteBuffer& content) {
        return header(id, content, 0x80000000u);
    }

private:
    ByteWriter& header(std::uint16_t id, const ByteBuffer& content, std::uint32_t mark) {
        u16(id);
        u32(static_cast<std::uint32_t>(content.size() + 6) | mark);
        return raw(content);
    }

    ByteBuffer bytes_;
};

} // namespace max_file

// Borrowed bytes, and a cursor that reads them in little-endian order. A read past the end returns false and
// does not move the cursor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace max_file {

struct Bytes {
    const std::uint8_t* data = nullptr;
    std::size_t size = 0;

    Bytes() = default;
    Bytes(const std::uint8_t* first, std::size_t count) : data(first), size(count) {}
    Bytes(const std::vector<std::uint8_t>& bytes) : data(bytes.data()), size(bytes.size()) {}
};

class ByteCursor {
public:
    explicit ByteCursor(Bytes bytes) : bytes_(bytes) {}

    std::size_t position() const { return position_; }
    std::size_t left() const { return bytes_.size - position_; }

    bool seek(std::size_t position) {
        if (position > bytes_.size) {
            return false;
        }
        position_ = position;
        return true;
    }

    bool take(std::size_t count, Bytes& taken) {
        if (count > left()) {
            return false;
        }
        taken = Bytes(bytes_.data + position_, count);
        position_ += count;
        return true;
    }

    template <class Unsigned>
    bool read(Unsigned& value) {
        Bytes raw;
        if (!take(sizeof(Unsigned), raw)) {
            return false;
        }
        value = 0;
        for (std::size_t index = sizeof(Unsigned); index > 0; --index) {
            value = static_cast<Unsigned>((static_cast<std::uint64_t>(value) << 8) | raw.data[index - 1]);
        }
        return true;
    }

private:
    Bytes bytes_;
    std::size_t position_ = 0;
};

} // namespace max_file

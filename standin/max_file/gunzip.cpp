#include "standin/max_file/gunzip.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <memory>

namespace max_file {

namespace {

constexpr std::size_t kStep = 256 * 1024;

} // namespace

bool is_gzip(const ByteBuffer& bytes) {
    return bytes.size() >= 2 && bytes[0] == 0x1F && bytes[1] == 0x8B;
}

bool gunzip(const ByteBuffer& packed, std::size_t limit, ByteBuffer& unpacked, std::string& problem) {
    unpacked.clear();
    z_stream stream = {};
    const bool ready = ::inflateInit2(&stream, MAX_WBITS + 16) == Z_OK;
    const std::unique_ptr<z_stream, int (*)(z_stream*)> end(ready ? &stream : nullptr, ::inflateEnd);
    if (!ready || packed.size() > std::numeric_limits<uInt>::max()) {
        problem = "it cannot be unpacked";
        return false;
    }
    stream.next_in = const_cast<Bytef*>(packed.data());
    stream.avail_in = static_cast<uInt>(packed.size());
    ByteBuffer step(kStep);
    int state = Z_OK;
    while (state == Z_OK) {
        stream.next_out = step.data();
        stream.avail_out = static_cast<uInt>(step.size());
        state = ::inflate(&stream, Z_NO_FLUSH);
        const std::size_t produced = step.size() - stream.avail_out;
        if (produced > limit - unpacked.size()) {
            problem = "unpacked, it is too large";
            return false;
        }
        unpacked.insert(unpacked.end(), step.begin(), step.begin() + static_cast<std::ptrdiff_t>(produced));
    }
    if (state != Z_STREAM_END) {
        problem =
            state == Z_BUF_ERROR ? "its compressed bytes are cut off" : "its compressed bytes are damaged";
        return false;
    }
    return true;
}

} // namespace max_file

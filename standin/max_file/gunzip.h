// Unpacks a gzip stream through zlib; the only file that needs zlib.
#pragma once

#include "standin/max_file/scene_reader.h"

#include <cstddef>
#include <string>

namespace max_file {

// Whether the bytes begin like a gzip stream.
bool is_gzip(const ByteBuffer& bytes);

// False, with the reason in `problem`, when the stream is damaged, cut off, or longer than `limit` unpacked.
bool gunzip(const ByteBuffer& packed, std::size_t limit, ByteBuffer& unpacked, std::string& problem);

} // namespace max_file

// Streams of texts. Internal to the language.
#pragma once

#include "standin/maxscript/engine.h"

namespace maxscript {

// An open file. What is written reaches the file on flush, on close, and when the stream goes.
struct FileStream {
    FileStream() = default;
    ~FileStream();
    FileStream(const FileStream&) = delete;
    FileStream& operator=(const FileStream&) = delete;
    bool flush();

    FileAccess* files = nullptr; // null: closed
    Text path;
    Text text;
    std::size_t position = 0;
    bool can_read = false;
    bool can_write = false;
    bool is_changed = false;
    bool is_binary = false;
    bool has_mark = false; // of UTF-8, at the start
    // What earlier flushes encoded: a long report that is flushed line by line is encoded once.
    std::string encoded;
    std::size_t encoded_units = 0;
};

// A string stream or an open file; anything else is an error.
void write_to_stream(Engine& engine, const Value& stream, const Text& text);

// The text behind bytes of a file: by its mark, as UTF-8, else byte by byte.
Text decoded(const std::string& bytes, bool& has_mark);

} // namespace maxscript

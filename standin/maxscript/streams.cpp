#include "standin/maxscript/streams.h"

namespace maxscript {

namespace {

Text without_carriage_returns(const Text& text) {
    Text result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != u'\r' || i + 1 >= text.size() || text[i + 1] != u'\n') {
            result += text[i];
        }
    }
    return result;
}

Text utf16_text(const std::string& bytes, bool is_little) {
    Text text;
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        text += static_cast<char16_t>(is_little ? first | (second << 8) : second | (first << 8));
    }
    return text;
}

struct TextPlace {
    const Text* text;
    std::size_t* position;
};

TextPlace readable(Arguments& arguments) {
    const Value stream = arguments[0];
    if (stream.is(Kind::string_stream)) {
        return TextPlace{&stream.as_string_stream().text, &stream.as_string_stream().position};
    }
    if (!stream.is(Kind::file_stream)) {
        arguments.fail_conversion(0, u"Stream");
    }
    FileStream& file = stream.as_file_stream();
    if (file.files == nullptr || !file.can_read) {
        arguments.fail(u"Runtime error: the file is not open for reading: " + file.path);
    }
    return TextPlace{&file.text, &file.position};
}

Value read_line(Arguments& arguments) {
    const TextPlace place = readable(arguments);
    std::size_t& at = *place.position;
    if (at >= place.text->size()) {
        arguments.fail(u"Runtime error: Read past end of file");
    }
    const std::size_t end = std::min(place.text->find(u'\n', at), place.text->size());
    Text line = place.text->substr(at, end - at);
    at = std::min(end + 1, place.text->size());
    if (!line.empty() && line.back() == u'\r') {
        line.pop_back();
    }
    arguments.interpreter().charge(line.size());
    return Value::string(std::move(line));
}

Value flush_stream(Arguments& arguments, bool closes) {
    const Value stream = arguments[0];
    if (stream.is(Kind::string_stream)) {
        return Value::ok();
    }
    if (!stream.is(Kind::file_stream)) {
        arguments.fail_conversion(0, u"FileStream");
    }
    FileStream& file = stream.as_file_stream();
    const bool written = file.flush();
    if (closes) {
        file.files = nullptr;
    }
    if (!written) {
        arguments.fail(u"Runtime error: the file cannot be written: " + file.path);
    }
    return Value::ok();
}

std::string encoded_lines(const Text& text, bool is_binary) {
    Text content;
    for (const char16_t unit : text) {
        if (unit == u'\n' && !is_binary) {
            content += u'\r';
        }
        content += unit;
    }
    return utf8_from_text(content);
}

} // namespace

FileStream::~FileStream() {
    flush();
}

bool FileStream::flush() {
    if (files == nullptr || !is_changed) {
        return true;
    }
    // Text only grows. Half of a pair may get its other half with the next text.
    const std::size_t whole =
        text.size() - (!text.empty() && text.back() >= 0xD800 && text.back() <= 0xDBFF ? 1 : 0);
    encoded += encoded_lines(text.substr(encoded_units, whole - encoded_units), is_binary);
    encoded_units = whole;
    is_changed = false;
    return files->write(path, (has_mark ? "\xEF\xBB\xBF" : "") + encoded +
                                  encoded_lines(text.substr(whole), is_binary));
}

Text decoded(const std::string& bytes, bool& has_mark) {
    has_mark = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0;
    if (bytes.compare(0, 2, "\xFF\xFE") == 0 || bytes.compare(0, 2, "\xFE\xFF") == 0) {
        return utf16_text(bytes, bytes[0] == '\xFF');
    }
    Text text = text_from_utf8(has_mark ? bytes.substr(3) : bytes);
    if (text.find(u'\xFFFD') == Text::npos || has_mark) {
        return text;
    }
    Text single;
    for (const char byte : bytes) {
        single += static_cast<char16_t>(static_cast<unsigned char>(byte));
    }
    return single;
}

void write_to_stream(Engine& engine, const Value& stream, const Text& text) {
    engine.charge(text.size());
    if (stream.is(Kind::string_stream)) {
        StringStream& target = stream.as_string_stream();
        target.text += text;
        target.position = target.text.size();
        return;
    }
    if (!stream.is(Kind::file_stream)) {
        engine.fail(u"Unable to convert: " + printed_text(engine, stream) + u" to type: Stream");
    }
    FileStream& file = stream.as_file_stream();
    if (file.files == nullptr || !file.can_write) {
        engine.fail(u"Runtime error: the file is not open for writing: " + file.path);
    }
    file.text += text;
    file.position = file.text.size();
    file.is_changed = true;
}

namespace {

Value open_file(Arguments& arguments) {
    FileAccess* files = arguments.interpreter().environment().files;
    auto file = std::make_shared<FileStream>();
    file->path = arguments.text(0);
    const Text mode = arguments.keyword_text(u"mode", u"rt");
    const bool reads = mode.find(u'r') != Text::npos;
    const bool starts_empty = mode.find(u'w') != Text::npos;
    const bool updates = mode.find(u'+') != Text::npos;
    file->is_binary = mode.find(u'b') != Text::npos;
    file->can_read = reads || updates;
    file->can_write = !reads || updates;
    std::string bytes;
    const bool exists = files != nullptr && files->exists(file->path);
    if (files == nullptr || (reads && !exists) ||
        (exists && !starts_empty && !files->read(file->path, bytes))) {
        return Value();
    }
    if (file->can_write && exists && files->is_read_only(file->path)) {
        return Value();
    }
    arguments.interpreter().charge(bytes.size());
    file->text = decoded(bytes, file->has_mark);
    file->text = file->is_binary ? file->text : without_carriage_returns(file->text);
    if (starts_empty && !files->write(file->path, std::string())) {
        return Value();
    }
    if (!reads) {
        file->position = file->text.size();
    }
    file->files = files;
    return Value::shared(Kind::file_stream, std::move(file));
}

Value create_file(Arguments& arguments) {
    FileAccess* files = arguments.interpreter().environment().files;
    auto file = std::make_shared<FileStream>();
    file->path = arguments.text(0);
    if (files == nullptr || !files->write(file->path, std::string())) {
        return Value();
    }
    file->can_read = true;
    file->can_write = true;
    file->has_mark = arguments.keyword_boolean(u"writebom", false);
    file->files = files;
    return Value::shared(Kind::file_stream, std::move(file));
}

} // namespace

void add_stream_functions(Globals& globals) {
    globals.add_function(u"openFile", 1, 1, {u"mode", u"encoding", u"writeBOM"}, open_file);
    globals.add_function(u"createFile", 1, 1, {u"encoding", u"writeBOM"}, create_file);
    globals.add_function(u"readLine", 1, 1, {}, read_line);
    globals.add_function(u"eof", 1, 1, {}, [](Arguments& a) {
        const TextPlace place = readable(a);
        return Value::boolean(*place.position >= place.text->size());
    });
    globals.add_function(u"flush", 1, 1, {}, [](Arguments& a) { return flush_stream(a, false); });
    globals.add_function(u"close", 1, 1, {}, [](Arguments& a) { return flush_stream(a, true); });
}

} // namespace maxscript

// Files by name, names of files, and streams.
#include "standin/maxscript/operations.h"

#include <algorithm>

namespace maxscript {

// An open file. Its text is written by flush, by close, and when the stream is destroyed.
struct FileStream {
    FileStream() = default;
    ~FileStream() { flush(); }
    FileStream(const FileStream&) = delete;
    FileStream& operator=(const FileStream&) = delete;
    bool flush();

    FileAccess* files = nullptr; // null: closed
    Text path;
    Text text; // of the whole file
    std::size_t position = 0;
    bool can_write = false;
    bool is_changed = false;
};

bool FileStream::flush() {
    if (files == nullptr || !is_changed) {
        return true;
    }
    Text content;
    for (const char16_t unit : text) {
        if (unit == u'\n') {
            content += u'\r';
        }
        content += unit;
    }
    is_changed = false;
    return files->write(path, utf8_from_text(content));
}

namespace {

FileAccess& files_of(Arguments& arguments) {
    FileAccess* files = arguments.interpreter().environment().files;
    if (files == nullptr) {
        arguments.fail(u"Runtime error: there are no files here");
    }
    return *files;
}

// After the last separator.
std::size_t name_start(const Text& path) {
    const std::size_t separator = path.find_last_of(u"\\/:");
    return separator == Text::npos ? 0 : separator + 1;
}

// Where the type begins, with its dot; the end when there is none.
std::size_t type_start(const Text& path) {
    const std::size_t dot = path.rfind(u'.');
    return dot == Text::npos || dot < name_start(path) ? path.size() : dot;
}

Value list_files(Arguments& arguments) {
    std::vector<Value> items;
    for (const Text& path : files_of(arguments).list(arguments.text(0))) {
        items.push_back(Value::string(path));
    }
    return Value::array(std::move(items));
}

void refuse_attribute(Arguments& arguments) {
    const Text& attribute = arguments.name(1);
    if (attribute != u"readonly") {
        arguments.fail(u"Runtime error: the attribute #" + attribute + u" is not supported");
    }
}

Value file_attribute(Arguments& arguments) {
    refuse_attribute(arguments);
    return Value::boolean(files_of(arguments).is_read_only(arguments.text(0)));
}

Value set_file_attribute(Arguments& arguments) {
    refuse_attribute(arguments);
    return Value::boolean(files_of(arguments).set_read_only(arguments.text(0), arguments.boolean(2)));
}

// The text of a file: UTF-16 with a byte order mark, UTF-8, or one character for each byte.
Text decoded(const std::string& bytes) {
    Text text;
    const bool is_little = bytes.compare(0, 2, "\xFF\xFE") == 0;
    if (is_little || bytes.compare(0, 2, "\xFE\xFF") == 0) {
        for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
            const auto first = static_cast<unsigned char>(bytes[i]);
            const auto second = static_cast<unsigned char>(bytes[i + 1]);
            text += static_cast<char16_t>(is_little ? first | (second << 8) : second | (first << 8));
        }
        return text;
    }
    const bool has_mark = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0;
    text = text_from_utf8(has_mark ? bytes.substr(3) : bytes);
    if (text.find(u'\xFFFD') != Text::npos && !has_mark) {
        text.clear();
        for (const char byte : bytes) {
            text += static_cast<char16_t>(static_cast<unsigned char>(byte));
        }
    }
    return text;
}

Value stream_value(Arguments& arguments, const Text& text, bool can_write) {
    auto file = std::make_shared<FileStream>();
    file->files = &files_of(arguments);
    file->path = arguments.text(0);
    file->text = text;
    file->can_write = can_write;
    return Value::shared(Kind::file_stream, std::move(file));
}

Value open_file(Arguments& arguments) {
    const Text mode = arguments.keyword_text(u"mode", u"rt");
    if (mode != u"r" && mode != u"rt") {
        arguments.fail(u"Runtime error: openFile takes only mode:\"r\" and \"rt\" here");
    }
    std::string bytes;
    if (!files_of(arguments).read(arguments.text(0), bytes)) {
        return Value();
    }
    arguments.interpreter().charge(bytes.size());
    return stream_value(arguments, decoded(bytes), false);
}

Value create_file(Arguments& arguments) {
    const bool is_made = files_of(arguments).write(arguments.text(0), std::string());
    return is_made ? stream_value(arguments, Text(), true) : Value();
}

FileStream& stream_of(Arguments& arguments) {
    if (!arguments[0].is(Kind::file_stream)) {
        arguments.fail_conversion(0, u"FileStream");
    }
    return arguments[0].as_file_stream();
}

FileStream& readable(Arguments& arguments) {
    FileStream& file = stream_of(arguments);
    if (file.files == nullptr || file.can_write) {
        arguments.fail(u"Runtime error: the file is not open for reading: " + file.path);
    }
    return file;
}

Value read_line(Arguments& arguments) {
    FileStream& file = readable(arguments);
    if (file.position >= file.text.size()) {
        arguments.fail(u"Runtime error: Read past end of file");
    }
    const std::size_t end = std::min(file.text.find(u'\n', file.position), file.text.size());
    Text line = file.text.substr(file.position, end - file.position);
    file.position = std::min(end + 1, file.text.size());
    if (!line.empty() && line.back() == u'\r') {
        line.pop_back();
    }
    arguments.interpreter().charge(line.size());
    return Value::string(std::move(line));
}

Value flush_stream(Arguments& arguments, bool closes) {
    FileStream& file = stream_of(arguments);
    const bool written = file.flush();
    if (closes) {
        file.files = nullptr;
    }
    if (!written) {
        arguments.fail(u"Runtime error: the file cannot be written: " + file.path);
    }
    return Value::ok();
}

void add_name_functions(Globals& globals) {
    globals.add_function(u"getFilenamePath", 1, 1, {}, [](Arguments& a) {
        return Value::string(a.text(0).substr(0, name_start(a.text(0))));
    });
    globals.add_function(u"filenameFromPath", 1, 1, {},
                         [](Arguments& a) { return Value::string(a.text(0).substr(name_start(a.text(0)))); });
    globals.add_function(u"getFilenameFile", 1, 1, {}, [](Arguments& a) {
        const std::size_t start = name_start(a.text(0));
        return Value::string(a.text(0).substr(start, type_start(a.text(0)) - start));
    });
    globals.add_function(u"getFilenameType", 1, 1, {},
                         [](Arguments& a) { return Value::string(a.text(0).substr(type_start(a.text(0)))); });
}

void add_stream_functions(Globals& globals) {
    globals.add_function(u"openFile", 1, 1, {u"mode"}, open_file);
    globals.add_function(u"createFile", 1, 1, {}, create_file);
    globals.add_function(u"readLine", 1, 1, {}, read_line);
    globals.add_function(u"eof", 1, 1, {}, [](Arguments& a) {
        const FileStream& file = readable(a);
        return Value::boolean(file.position >= file.text.size());
    });
    globals.add_function(u"flush", 1, 1, {}, [](Arguments& a) { return flush_stream(a, false); });
    globals.add_function(u"close", 1, 1, {}, [](Arguments& a) { return flush_stream(a, true); });
}

} // namespace

void write_to_stream(Interpreter& interpreter, const Value& stream, const Text& text) {
    interpreter.charge(text.size());
    if (stream.is(Kind::string_stream)) {
        stream.as_string_stream().text += text;
        return;
    }
    if (!stream.is(Kind::file_stream)) {
        interpreter.fail_conversion(stream, u"Stream");
    }
    FileStream& file = stream.as_file_stream();
    if (file.files == nullptr || !file.can_write) {
        interpreter.fail(u"Runtime error: the file is not open for writing: " + file.path);
    }
    file.text += text;
    file.is_changed = true;
}

void add_file_functions(Globals& globals) {
    add_name_functions(globals);
    add_stream_functions(globals);
    globals.add_function(u"doesFileExist", 1, 1, {}, [](Arguments& a) {
        return Value::boolean(!a.text(0).empty() && files_of(a).exists(a.text(0)));
    });
    globals.add_function(u"getFileSize", 1, 1, {}, [](Arguments& a) {
        return Value::integer(static_cast<std::int32_t>(files_of(a).size(a.text(0))));
    });
    globals.add_function(u"doesDirectoryExist", 1, 1, {},
                         [](Arguments& a) { return Value::boolean(files_of(a).folder_exists(a.text(0))); });
    globals.add_function(u"getFiles", 1, 1, {}, list_files);
    globals.add_function(u"deleteFile", 1, 1, {},
                         [](Arguments& a) { return Value::boolean(files_of(a).remove(a.text(0))); });
    globals.add_function(u"renameFile", 2, 2, {}, [](Arguments& a) {
        return Value::boolean(files_of(a).rename(a.text(0), a.text(1)));
    });
    globals.add_function(u"copyFile", 2, 2, {},
                         [](Arguments& a) { return Value::boolean(files_of(a).copy(a.text(0), a.text(1))); });
    globals.add_function(u"getFileAttribute", 2, 2, {}, file_attribute);
    globals.add_function(u"setFileAttribute", 3, 3, {}, set_file_attribute);
}

} // namespace maxscript

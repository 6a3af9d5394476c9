// Files by name, and names of files.
#include "standin/maxscript/engine.h"

namespace maxscript {

namespace {

FileAccess& files_of(Arguments& arguments) {
    FileAccess* files = arguments.interpreter().environment().files;
    if (files == nullptr) {
        arguments.fail(u"Runtime error: there are no files here");
    }
    return *files;
}

// Behind the last separator.
std::size_t name_start(const Text& path) {
    const std::size_t separator = path.find_last_of(u"\\/:");
    return separator == Text::npos ? 0 : separator + 1;
}

// Where the type begins, with its dot; the end when there is none.
std::size_t type_start(const Text& path) {
    const std::size_t dot = path.rfind(u'.');
    return dot == Text::npos || dot < name_start(path) ? path.size() : dot;
}

Value text_array(const std::vector<Text>& texts) {
    std::vector<Value> items;
    items.reserve(texts.size());
    for (const Text& text : texts) {
        items.push_back(Value::string(text));
    }
    return Value::array(std::move(items));
}

Value file_attribute(Arguments& arguments) {
    const Text attribute = arguments.name(1);
    if (attribute != u"readonly") {
        arguments.fail(u"Runtime error: the attribute #" + attribute + u" is not supported");
    }
    return Value::boolean(files_of(arguments).is_read_only(arguments.text(0)));
}

Value set_file_attribute(Arguments& arguments) {
    const Text attribute = arguments.name(1);
    if (attribute != u"readonly") {
        arguments.fail(u"Runtime error: the attribute #" + attribute + u" is not supported");
    }
    return Value::boolean(files_of(arguments).set_read_only(arguments.text(0), arguments.boolean(2)));
}

// 0 for a file that is not there.
Value file_size(Arguments& arguments) {
    FileAccess* const files = arguments.interpreter().environment().files;
    return Value::integer(files == nullptr ? 0 : static_cast<std::int32_t>(files->size(arguments.text(0))));
}

Value file_exists(Arguments& arguments) {
    FileAccess* files = arguments.interpreter().environment().files;
    const Text& path = arguments.text(0);
    return Value::boolean(files != nullptr && !path.empty() && files->exists(path));
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

} // namespace

void add_file_functions(Globals& globals) {
    add_name_functions(globals);
    globals.add_function(u"doesFileExist", 1, 1, {u"allowDirectory"}, file_exists);
    globals.add_function(u"getFileSize", 1, 1, {}, file_size);
    globals.add_function(u"doesDirectoryExist", 1, 1, {},
                         [](Arguments& a) { return Value::boolean(files_of(a).folder_exists(a.text(0))); });
    globals.add_function(u"getFiles", 1, 1, {},
                         [](Arguments& a) { return text_array(files_of(a).list(a.text(0))); });
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

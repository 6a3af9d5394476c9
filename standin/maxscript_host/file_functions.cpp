// getDir for the start-up folders, files as bytes (fopen, readByte, writeByte, fclose), and the keys of INI
// files (getINISetting, setINISetting); a key that is missing is empty.
#include "standin/maxscript_host/security_scene.h"

namespace maxscript_host {

namespace {

using maxscript::Arguments;
using maxscript::FileAccess;

class ByteStream : public maxscript::HostObject {
public:
    ByteStream(FileAccess& files, Text path, bool writes)
        : files_(files), path_(std::move(path)), writes_(writes) {}

    // False: the file cannot be read, or not be written.
    bool open() {
        open_ = writes_ ? files_.write(path_, bytes_) : files_.read(path_, bytes_);
        return open_;
    }
    bool close() {
        const bool done = open_ && (!writes_ || files_.write(path_, bytes_));
        open_ = false;
        return done;
    }
    Value next(bool is_unsigned) {
        if (!open_ || writes_ || position_ >= bytes_.size()) {
            return Value::undefined();
        }
        const auto byte = static_cast<unsigned char>(bytes_[position_++]);
        return Value::integer(is_unsigned ? byte : static_cast<signed char>(byte));
    }
    bool append(std::int32_t byte) {
        const bool fits = open_ && writes_ && byte >= -128 && byte <= 255;
        if (fits) {
            bytes_ += static_cast<char>(byte);
        }
        return fits;
    }
    maxscript::ClassPointer host_class() const override {
        static const maxscript::ClassPointer made = maxscript::make_class(u"BinStream");
        return made;
    }

private:
    FileAccess& files_;
    Text path_;
    bool writes_;
    bool open_ = false;
    std::string bytes_;
    std::size_t position_ = 0;
};

std::shared_ptr<ByteStream> stream_of(Arguments& arguments) {
    std::shared_ptr<ByteStream> stream = arguments[0].object_as<ByteStream>();
    if (!stream) {
        arguments.fail_conversion(0, u"BinStream");
    }
    return stream;
}

Value open_stream(Arguments& arguments) {
    FileAccess* const files = arguments.interpreter().environment().files;
    const Text& mode = arguments.text(1);
    if (mode != u"rb" && mode != u"wb") {
        arguments.fail(u"fopen: this host takes only \"rb\" and \"wb\"");
    }
    if (files == nullptr) {
        return Value::undefined();
    }
    const auto stream = std::make_shared<ByteStream>(*files, arguments.text(0), mode == u"wb");
    return stream->open() ? Value::object(stream) : Value::undefined();
}

bool says_unsigned(const Arguments& arguments, std::size_t index) {
    return arguments.count() > index && arguments.name(index) == u"unsigned";
}

Value read_byte(Arguments& arguments) {
    return stream_of(arguments)->next(says_unsigned(arguments, 1));
}

// Without #unsigned only the values of a signed byte can be written.
Value write_byte(Arguments& arguments) {
    const std::int32_t byte = arguments.integer(1);
    const bool fits = says_unsigned(arguments, 2) ? byte >= 0 : byte <= 127;
    return Value::boolean(fits && stream_of(arguments)->append(byte));
}

Value close_stream(Arguments& arguments) {
    return Value::boolean(stream_of(arguments)->close());
}

// The text of a file, and the place of one key's value in it.
class IniText {
public:
    IniText(std::string text, const Text& section, const Text& key) : text_(std::move(text)) {
        const Text heading = u"[" + maxscript::folded(section) + u"]";
        const Text wanted = maxscript::folded(key);
        bool inside = false;
        for (std::size_t begin = 0; begin < text_.size(); begin = end_of_line(begin) + 1) {
            std::string line = text_.substr(begin, end_of_line(begin) - begin);
            line.erase(line.find_last_not_of('\r') + 1);
            const Text folded = maxscript::folded(maxscript::text_from_utf8(line));
            const std::size_t equals = line.find('=');
            if (!line.empty() && line[0] == '[') {
                inside = folded == heading;
            } else if (inside && equals != std::string::npos && folded.substr(0, equals) == wanted) {
                start_ = begin + equals + 1;
                length_ = line.size() - equals - 1;
                return;
            }
        }
    }

    bool found() const { return start_ != std::string::npos; }
    std::string value() const { return found() ? text_.substr(start_, length_) : std::string(); }
    std::string with(const std::string& value) const {
        return text_.substr(0, start_) + value + text_.substr(start_ + length_);
    }

private:
    std::size_t end_of_line(std::size_t begin) const {
        const std::size_t end = text_.find('\n', begin);
        return end == std::string::npos ? text_.size() : end;
    }

    std::string text_;
    std::size_t start_ = std::string::npos;
    std::size_t length_ = 0;
};

IniText ini_of(Arguments& arguments) {
    FileAccess* const files = arguments.interpreter().environment().files;
    std::string text;
    if (files != nullptr) {
        files->read(arguments.text(0), text);
    }
    return IniText(text, arguments.text(1), arguments.text(2));
}

// Only an existing key: no script here adds one.
Value set_setting(Arguments& arguments) {
    const IniText ini = ini_of(arguments);
    return Value::boolean(ini.found() &&
                          arguments.interpreter().environment().files->write(
                              arguments.text(0), ini.with(maxscript::utf8_from_text(arguments.text(3)))));
}

} // namespace

void install_file_functions(Interpreter& interpreter, SecurityScene& scene) {
    maxscript::Globals& globals = interpreter.globals();
    globals.add_function(u"getDir", 1, 1, {}, [&scene](Arguments& a) {
        const std::map<Text, Text> folders = {{u"startupscripts", scene.system_startup},
                                              {u"userstartupscripts", scene.user_startup},
                                              {u"plugcfg", scene.plugin_settings}};
        const auto found = folders.find(a.name(0));
        if (found == folders.end()) {
            a.fail(u"Invalid directory name: #" + a.name(0));
        }
        return Value::string(found->second);
    });
    globals.add_function(u"fopen", 2, 2, {}, open_stream);
    globals.add_function(u"readByte", 1, 2, {}, read_byte);
    globals.add_function(u"writeByte", 2, 3, {}, write_byte);
    globals.add_function(u"fclose", 1, 1, {}, close_stream);
    globals.add_function(u"getINISetting", 3, 3, {}, [](Arguments& a) {
        return Value::string(maxscript::text_from_utf8(ini_of(a).value()));
    });
    globals.add_function(u"setINISetting", 4, 4, {}, set_setting);
}

} // namespace maxscript_host

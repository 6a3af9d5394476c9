// getDir for the start-up folders, and files as bytes (fopen, readByte, writeByte, fclose).
#include "standin/maxscript_host/security_scene.h"

namespace maxscript_host {

namespace {

using maxscript::Arguments;
using maxscript::FileAccess;
using maxscript::HostClass;
using maxscript::HostObject;
using maxscript::NativeFunction;

class ByteStream : public HostObject {
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
    std::shared_ptr<const HostClass> host_class() const override {
        static const auto made = [] {
            auto bin_stream = std::make_shared<HostClass>();
            bin_stream->name = u"BinStream";
            return bin_stream;
        }();
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

// Without #unsigned only what a signed byte holds is written right.
Value write_byte(Arguments& arguments) {
    const std::int32_t byte = arguments.integer(1);
    const bool fits = says_unsigned(arguments, 2) ? byte >= 0 : byte <= 127;
    return Value::boolean(fits && stream_of(arguments)->append(byte));
}

Value close_stream(Arguments& arguments) {
    return Value::boolean(stream_of(arguments)->close());
}

void add_function(Interpreter& interpreter, const Text& name, int fewest, int most,
                  maxscript::NativeCode code) {
    NativeFunction function;
    function.name = name;
    function.fewest = fewest;
    function.most = most;
    function.code = std::move(code);
    interpreter.globals().add_function(function);
}

} // namespace

void install_startup_folders(Interpreter& interpreter, SecurityScene& scene) {
    add_function(interpreter, u"getDir", 1, 1, [&scene](Arguments& a) {
        const std::map<Text, Text> folders = {{u"startupscripts", scene.system_startup},
                                              {u"userstartupscripts", scene.user_startup},
                                              {u"plugcfg", scene.plugin_settings}};
        const auto found = folders.find(a.name(0));
        if (found == folders.end()) {
            a.fail(u"Invalid directory name: #" + a.name(0));
        }
        return Value::string(found->second);
    });
}

void install_binary_streams(Interpreter& interpreter) {
    add_function(interpreter, u"fopen", 2, 2, open_stream);
    add_function(interpreter, u"readByte", 1, 2, read_byte);
    add_function(interpreter, u"writeByte", 2, 3, write_byte);
    add_function(interpreter, u"fclose", 1, 1, close_stream);
}

} // namespace maxscript_host

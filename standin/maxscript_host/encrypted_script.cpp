#include "standin/maxscript_host/encrypted_script.h"

#include "standin/maxscript_host/scene_library.h"

namespace maxscript_host {

namespace {

using maxscript::Arguments;
using maxscript::FileAccess;
using maxscript::Interpreter;
using maxscript::NativeFunction;
using maxscript::Text;
using maxscript::Value;

const std::string kHeader = "STAND-IN FOR AN ENCRYPTED SCRIPT 1\n";
constexpr unsigned char kMask = 0xA5;
constexpr const char16_t* kEncryptedEnding = u".mse";

std::string masked(std::string bytes) {
    for (char& byte : bytes) {
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ kMask);
    }
    return bytes;
}

bool is_encrypted_name(const Text& path) {
    const Text ending = kEncryptedEnding;
    return path.size() > ending.size() &&
           maxscript::equal_folded(path.substr(path.size() - ending.size()), ending);
}

Value encrypt_script(Arguments& arguments) {
    FileAccess* const files = arguments.interpreter().environment().files;
    const Text& path = arguments.text(0);
    const std::size_t dot = path.find_last_of(u'.');
    std::string script;
    if (files == nullptr || dot == Text::npos || !files->read(path, script)) {
        arguments.fail(u"-- Runtime error: encryptScript cannot open the file: " + path);
    }
    // A file that cannot be written is not told.
    files->write(path.substr(0, dot) + kEncryptedEnding, encrypted_script(script));
    return Value::ok();
}

Value load_encrypted(Interpreter& interpreter, const Text& path) {
    FileAccess* const files = interpreter.environment().files;
    std::string bytes;
    std::string script;
    if (files == nullptr || !files->read(path, bytes)) {
        interpreter.fail(u"-- Runtime error: fileIn cannot open the file: " + path);
    }
    if (!decrypted_script(bytes, script)) {
        interpreter.fail(u"-- Runtime error: fileIn: not an encrypted script: " + path);
    }
    return interpreter.run(maxscript::text_from_utf8(script), path);
}

} // namespace

std::string encrypted_script(const std::string& script) {
    return kHeader + masked(script);
}

bool decrypted_script(const std::string& bytes, std::string& script) {
    if (bytes.compare(0, kHeader.size(), kHeader) != 0) {
        return false;
    }
    script = masked(bytes.substr(kHeader.size()));
    return true;
}

void install_encrypted_scripts(Interpreter& interpreter) {
    NativeFunction encrypt;
    encrypt.name = u"encryptScript";
    encrypt.fewest = 1;
    encrypt.most = 1;
    encrypt.keywords = {u"version"};
    encrypt.code = encrypt_script;
    interpreter.globals().add_function(encrypt);

    Value original;
    interpreter.globals().get(u"fileIn", original);
    NativeFunction load = original.as_native();
    const maxscript::NativeCode load_plain = load.code;
    load.code = [load_plain](Arguments& arguments) {
        return is_encrypted_name(arguments.text(0))
                   ? load_encrypted(arguments.interpreter(), arguments.text(0))
                   : load_plain(arguments);
    };
    interpreter.globals().add_function(load);
}

} // namespace maxscript_host

#include "standin/maxscript_host/scene_library.h"

namespace maxscript_host {

namespace {

using maxscript::Arguments;
using maxscript::FileAccess;

const std::string kHeader = "STAND-IN FOR AN ENCRYPTED SCRIPT 1\n";
constexpr unsigned char kMask = 0xA5;
const Text kEncryptedEnding = u".mse";

std::string masked(std::string bytes) {
    for (char& byte : bytes) {
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ kMask);
    }
    return bytes;
}

bool is_encrypted_name(const Text& path) {
    return path.size() > kEncryptedEnding.size() &&
           maxscript::equal_folded(path.substr(path.size() - kEncryptedEnding.size()), kEncryptedEnding);
}

Value encrypt_script(Arguments& arguments) {
    FileAccess* const files = arguments.interpreter().environment().files;
    const Text& path = arguments.text(0);
    const std::size_t dot = path.find_last_of(u'.');
    std::string script;
    if (files == nullptr || dot == Text::npos || !files->read(path, script)) {
        arguments.fail(u"-- Runtime error: encryptScript cannot open the file: " + path);
    }
    // No error when the file cannot be written.
    files->write(path.substr(0, dot) + kEncryptedEnding, kHeader + masked(script));
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

bool decrypted_script(const std::string& bytes, std::string& script) {
    if (bytes.compare(0, kHeader.size(), kHeader) != 0) {
        return false;
    }
    script = masked(bytes.substr(kHeader.size()));
    return true;
}

void install_encrypted_scripts(Interpreter& interpreter) {
    interpreter.globals().add_function(u"encryptScript", 1, 1, {}, encrypt_script);
    interpreter.globals().wrap_function(u"fileIn", [](const maxscript::NativeCode& load_plain) {
        return [load_plain](Arguments& arguments) {
            return is_encrypted_name(arguments.text(0))
                       ? load_encrypted(arguments.interpreter(), arguments.text(0))
                       : load_plain(arguments);
        };
    });
}

} // namespace maxscript_host

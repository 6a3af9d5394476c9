// getINISetting and setINISetting for the keys of a section; a key that is missing is empty.
#include "standin/maxscript_host/security_scene.h"

namespace maxscript_host {

namespace {

using maxscript::Arguments;
using maxscript::FileAccess;

// A file's lines, and where the value of a key stands.
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

// Only a key that is there: no script here makes a new one.
Value set_setting(Arguments& arguments) {
    const IniText ini = ini_of(arguments);
    return Value::boolean(ini.found() &&
                          arguments.interpreter().environment().files->write(
                              arguments.text(0), ini.with(maxscript::utf8_from_text(arguments.text(3)))));
}

} // namespace

void install_ini_settings(Interpreter& interpreter) {
    maxscript::Globals& globals = interpreter.globals();
    globals.add_function(u"getINISetting", 3, 3, {}, [](Arguments& a) {
        return Value::string(maxscript::text_from_utf8(ini_of(a).value()));
    });
    globals.add_function(u"setINISetting", 4, 4, {}, set_setting);
}

} // namespace maxscript_host

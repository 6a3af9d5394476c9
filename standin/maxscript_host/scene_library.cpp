#include "standin/maxscript_host/scene_library.h"

namespace maxscript_host {

using maxscript::Arguments;
using maxscript::ClassPointer;
using maxscript::NativeCode;

void answer_or_fail(Interpreter& interpreter, const SceneHost& host, const Text& query) {
    if (!host.failing.empty() && host.failing.count(maxscript::folded(query)) != 0) {
        interpreter.fail(u"-- Runtime error: " + query + u" cannot be asked");
    }
}

NativeCode fallible(const SceneHost& host, const Text& query, NativeCode code) {
    return [&host, query, code = std::move(code)](Arguments& arguments) {
        answer_or_fail(arguments.interpreter(), host, query);
        return code(arguments);
    };
}

ClassPointer host_class(Interpreter& interpreter, const Text& name, const ClassPointer& super) {
    Value known;
    if (!interpreter.globals().get(name, known) || !known.is(maxscript::Kind::host_class)) {
        known = Value::of_class(maxscript::make_class(name, super));
        interpreter.globals().add_constant(name, known);
    }
    return known.pointer<const maxscript::HostClass>();
}

std::size_t index_argument(const Arguments& arguments, std::size_t count, const Text& what) {
    const std::int32_t index = arguments.integer(0);
    if (index < 1 || static_cast<std::size_t>(index) > count) {
        arguments.fail(u"-- Runtime error: no such " + what);
    }
    return static_cast<std::size_t>(index) - 1;
}

void install_scene_library(Interpreter& interpreter, SceneHost& host) {
    install_scene_settings(interpreter, host);
    install_cameras(interpreter, host);
    install_renderers(interpreter, host);
    install_file_queries(interpreter, host);
    install_encrypted_scripts(interpreter);
}

} // namespace maxscript_host

#include "standin/maxscript_host/scene_library.h"

namespace maxscript_host {

using maxscript::Interpreter;
using maxscript::Text;

void answer_or_fail(Interpreter& interpreter, const SceneHost& host, const Text& query) {
    if (!host.failing.empty() && host.failing.count(maxscript::folded(query)) != 0) {
        interpreter.fail(u"-- Runtime error: " + query + u" cannot be asked");
    }
}

void install_scene_library(Interpreter& interpreter, SceneHost& host) {
    install_scene_settings(interpreter, host);
    install_cameras(interpreter, host);
    install_renderers(interpreter, host);
    install_file_queries(interpreter, host);
    install_scene_state(interpreter, host);
    install_encrypted_scripts(interpreter);
}

} // namespace maxscript_host

// `globalVars` and `persistents`: get and set of an unknown global throw. A global that leaves the persistent
// pool keeps its value.
#include "standin/maxscript_host/security_scene.h"

namespace maxscript_host {

namespace {

using maxscript::Arguments;
using maxscript::Globals;
using maxscript::HostInterface;

Value names(const std::vector<Text>& texts) {
    std::vector<Value> values;
    values.reserve(texts.size());
    for (const Text& text : texts) {
        values.push_back(Value::name(text));
    }
    return Value::array(std::move(values));
}

[[noreturn]] void fail_unknown(const Arguments& arguments) {
    arguments.fail(u"Specified global variable does not exist: #" + arguments.name(0));
}

Value get(Arguments& arguments) {
    Value value;
    if (!arguments.interpreter().globals().get(arguments.name(0), value)) {
        fail_unknown(arguments);
    }
    return value;
}

Value set(Arguments& arguments, SecurityScene& scene) {
    const Text& name = arguments.name(0);
    if (scene.stuck_globals.count(name) != 0) {
        arguments.fail(u"Cannot assign to read-only variable: " + name);
    }
    if (!arguments.interpreter().globals().set(name, arguments[1])) {
        fail_unknown(arguments);
    }
    scene.journal.push_back(u"globalVars.set " + name);
    return arguments[1];
}

Value remove(Arguments& arguments, SecurityScene& scene) {
    const Text& name = arguments.name(0);
    Globals& globals = arguments.interpreter().globals();
    // A persistent variable would come back with the scene.
    if (scene.stuck_globals.count(name) != 0 || globals.is_persistent(name) || !globals.remove(name)) {
        return Value::boolean(false);
    }
    scene.journal.push_back(u"globalVars.remove " + name);
    return Value::boolean(true);
}

} // namespace

void restore_persistent_global(Interpreter& interpreter, const Text& name, const Value& value) {
    interpreter.globals().set_persistent(name, true);
    interpreter.globals().set(name, value);
}

void install_global_pools(Interpreter& interpreter, SecurityScene& scene) {
    auto global_vars = std::make_shared<HostInterface>(u"globalVars");
    global_vars->add(u"gather", 0, 0, {}, [](Arguments& a) {
        return names(a.interpreter().globals().names(Globals::Which::all));
    });
    global_vars->add(u"isGlobal", 1, 1, {}, [](Arguments& a) {
        return Value::boolean(a.interpreter().globals().is_global(a.name(0)));
    });
    global_vars->add(u"get", 1, 1, {}, get);
    global_vars->add(u"set", 2, 2, {}, [&scene](Arguments& a) { return set(a, scene); });
    global_vars->add(u"remove", 1, 1, {}, [&scene](Arguments& a) { return remove(a, scene); });
    interpreter.globals().add_constant(u"globalVars", Value::object(global_vars));

    auto persistents = std::make_shared<HostInterface>(u"persistents");
    persistents->add(u"gather", 0, 0, {},
                     [](Arguments& a) { return names(a.interpreter().globals().persistent_names()); });
    persistents->add(u"isPersistent", 1, 1, {}, [](Arguments& a) {
        if (!a.interpreter().globals().is_global(a.name(0))) {
            fail_unknown(a);
        }
        return Value::boolean(a.interpreter().globals().is_persistent(a.name(0)));
    });
    persistents->add(u"remove", 1, 1, {}, [&scene](Arguments& a) {
        if (scene.stuck_globals.count(a.name(0)) == 0) {
            a.interpreter().globals().set_persistent(a.name(0), false);
            scene.journal.push_back(u"persistents.remove " + a.name(0));
        }
        return Value::ok();
    });
    interpreter.globals().add_constant(u"persistents", Value::object(persistents));
}

} // namespace maxscript_host

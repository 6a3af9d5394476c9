// `callbacks`. Functions as callbacks and `asArray:` are newer than 2019.
#include "standin/maxscript_host/security_scene.h"

#include <algorithm>

namespace maxscript_host {

namespace {

using maxscript::Arguments;
using maxscript::HostInterface;
using maxscript::Kind;

struct Selection {
    Text event; // folded; empty: all
    Text id;
};

Selection selection(const Arguments& arguments) {
    return {arguments.count() > 0 ? arguments.name(0) : Text(), arguments.keyword_name(u"id", Text())};
}

bool is_selected(const SceneCallback& callback, const Selection& wanted) {
    return (wanted.event.empty() || maxscript::folded(callback.event) == wanted.event) &&
           (wanted.id.empty() || maxscript::folded(callback.id) == wanted.id);
}

Text script_of(Arguments& arguments) {
    if (!arguments[1].is(Kind::string)) {
        arguments.fail(u"callbacks.addScript takes a string in this version, no function");
    }
    return arguments.text(1);
}

Value add(Arguments& arguments, SecurityScene& scene) {
    SceneCallback callback;
    callback.event = arguments[0].is(Kind::name) ? arguments[0].as_name().text : arguments.name(0);
    callback.script = script_of(arguments);
    callback.id = arguments.has_keyword(u"id") ? arguments.keyword(u"id").as_name().text : Text();
    callback.persistent = arguments.keyword_boolean(u"persistent", false);
    scene.callbacks.push_back(callback);
    return Value::ok();
}

Value remove(Arguments& arguments, SecurityScene& scene) {
    const Selection wanted = selection(arguments);
    std::vector<SceneCallback>& all = scene.callbacks;
    for (const SceneCallback& callback : all) {
        if (is_selected(callback, wanted) && callback.stuck) {
            arguments.fail(u"Callback is in use: " + callback.id);
        }
    }
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&](const SceneCallback& one) { return is_selected(one, wanted); }),
              all.end());
    scene.journal.push_back(u"callbacks.removeScripts " + wanted.id);
    return Value::ok();
}

Value show(Arguments& arguments, SecurityScene& scene) {
    const Selection wanted = selection(arguments);
    Text listing;
    for (const SceneCallback& callback : scene.callbacks) {
        if (is_selected(callback, wanted)) {
            listing += u"#" + callback.event + (scene.lists_ids ? u": id: #" + callback.id : Text()) +
                       (callback.persistent ? u" persistent: true" : u" persistent: false") + u" script: " +
                       callback.script + u"\n";
        }
    }
    if (listing.empty() && scene.tells_of_no_callbacks) {
        listing = u"no callbacks with id #" + wanted.id + u"\n";
    }
    if (arguments.keyword(u"to").is(Kind::string_stream)) {
        arguments.keyword(u"to").as_string_stream().text += listing;
    } else if (arguments.interpreter().environment().listener != nullptr) {
        arguments.interpreter().environment().listener->write(listing);
    }
    return Value::ok();
}

} // namespace

void install_callbacks(Interpreter& interpreter, SecurityScene& scene) {
    auto callbacks = std::make_shared<HostInterface>(u"callbacks");
    callbacks->add(u"addScript", 2, 2, {u"id", u"persistent"},
                   [&scene](Arguments& a) { return add(a, scene); });
    callbacks->add(u"removeScripts", 0, 1, {u"id"}, [&scene](Arguments& a) { return remove(a, scene); });
    callbacks->add(u"show", 0, 1, {u"id", u"to"}, [&scene](Arguments& a) { return show(a, scene); });
    interpreter.globals().add_constant(u"callbacks", Value::object(callbacks));
}

} // namespace maxscript_host

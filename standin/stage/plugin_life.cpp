#include "standin/stage/plugin_life.h"

#include "standin/base/text.h"
#include "standin/host_sdk/control.h"

#include "guplib.h"

namespace stage {

namespace {

constexpr int kSystemStartup = 80;

} // namespace

void PluginLife::record(const char* event, long long result) {
    Json::Value entry(Json::objectValue);
    entry["event"] = event;
    entry["result"] = static_cast<Json::Int64>(result);
    transcript_.append("plugin", entry);
}

bool PluginLife::start(bool rebuild_menu_bar, std::string& problem) {
    ClassDesc* descriptor = module_.class_descriptor();
    if (descriptor == nullptr || descriptor->SuperClassID() != GUP_CLASS_ID) {
        problem = "the module has no utility-plugin class";
        return false;
    }
    plugin_ = static_cast<GUP*>(descriptor->Create());
    record("Create", plugin_ != nullptr ? 1 : 0);
    if (plugin_ == nullptr) {
        problem = "the class descriptor created no plugin object";
        return false;
    }
    const DWORD kept = plugin_->Start();
    record("Start", static_cast<long long>(kept));
    if (rebuild_menu_bar) {
        host_sdk::rebuild_menu_bar(host_sdk::save_menus());
    }
    if (kept == GUPRESULT_KEEP) {
        host_sdk::broadcast_notification(kSystemStartup);
    }
    return true;
}

void PluginLife::stop() {
    if (plugin_ == nullptr) {
        return;
    }
    plugin_->Stop();
    record("Stop", host_sdk::notification_handler_count(kSystemStartup));
    plugin_->DeleteThis();
    record("DeleteThis", host_sdk::live_heap_objects());
    plugin_ = nullptr;
}

Json::Value menu_lines() {
    Json::Value lines(Json::arrayValue);
    const std::string text = base::to_utf8(host_sdk::describe_menus());
    std::size_t from = 0;
    while (from < text.size()) {
        const std::size_t end = text.find('\n', from);
        const std::string line = text.substr(from, end == std::string::npos ? end : end - from);
        if (!line.empty()) {
            lines.append(line);
        }
        from = end == std::string::npos ? text.size() : end + 1;
    }
    return lines;
}

} // namespace stage

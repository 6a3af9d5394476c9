#include "standin/stage/expectations_lists.h"

#include "standin/base/wildcards.h"

namespace stage {

namespace {

void check_box(const Check& check, const Json::Value& wanted, const Json::Value& box,
               const std::string& place) {
    Json::Value rest = wanted;
    if (wanted["text"].isInt()) {
        rest.removeMember("text");
        if (!holds_number(box["text_numbers"], wanted["text"])) {
            check.differ(place_of(place, "text"),
                         compact(wanted["text"]) + " (" + check.matcher.text(wanted["text"].asUInt()) + ")",
                         compact(box["text_numbers"]) + " (" + box["text"].asString() + ")");
        }
    }
    // A caption is given by its text's number; 0 is the empty caption.
    if (wanted["caption"].isInt()) {
        rest["caption"] =
            wanted["caption"].asInt() == 0 ? "" : check.matcher.text(wanted["caption"].asUInt());
    }
    check.matcher.match(rest, box, place, check.mismatches);
}

std::string summary(const Json::Value& boxes) {
    std::string text;
    for (const Json::Value& box : boxes) {
        text += (text.empty() ? "" : ", ") + compact(box["text_numbers"]) + " " + box["text"].asString();
    }
    return text.empty() ? "no box" : text;
}

// "[INFO] message", which is what a scenario writes.
Json::Value log_texts(const Json::Value& lines) {
    Json::Value texts(Json::arrayValue);
    for (const Json::Value& line : lines) {
        texts.append("[" + line["level"].asString() + "] " + line["message"].asString());
    }
    return texts;
}

bool contains(const Matcher& matcher, const Json::Value& entries, const Json::Value& wanted) {
    for (const Json::Value& entry : entries) {
        if (matcher.matches(wanted, entry)) {
            return true;
        }
    }
    return false;
}

void check_none_with(const Check& check, const Json::Value& lines, const Json::Value& words,
                     const std::string& place) {
    for (const Json::Value& word : words) {
        for (const Json::Value& line : lines) {
            if (line.asString().find(word.asString()) != std::string::npos) {
                check.differ(place, "no line with " + word.asString(), line.asString());
            }
        }
    }
}

// "IMenuManager::RegisterMenu", or with a part that has an opening bracket the arguments too; * and ? stand
// for anything.
bool call_matches(const std::string& pattern, const Json::Value& call) {
    const std::string name = call["name"].asString();
    return pattern.find('(') == std::string::npos
               ? base::matches_wildcards(name, pattern)
               : base::matches_wildcards(name + "(" + call["arguments"].asString() + ")", pattern);
}

// Index of the first call from `from` on that matches; the size when none does.
Json::ArrayIndex find_call(const Json::Value& calls, const std::string& pattern, Json::ArrayIndex from) {
    while (from < calls.size() && !call_matches(pattern, calls[from])) {
        ++from;
    }
    return from;
}

Json::Value names_of(const Json::Value& files) {
    return texts_of(files, "name");
}

void check_file_content(const Check& check, const Json::Value& wanted, const Json::Value& file,
                        const std::string& place) {
    if (wanted.isMember("min_size") && file["size"].asInt64() < wanted["min_size"].asInt64()) {
        check.differ(place_of(place, "min_size"), compact(wanted["min_size"]), compact(file["size"]));
    }
    for (const char* key : {"json", "text", "infection"}) {
        if (wanted.isMember(key)) {
            check.matcher.match(wanted[key], file[key], place_of(place, key), check.mismatches,
                                file.isMember(key));
        }
    }
}

} // namespace

bool holds_number(const Json::Value& numbers, const Json::Value& number) {
    for (const Json::Value& candidate : numbers) {
        if (candidate.asInt() == number.asInt()) {
            return true;
        }
    }
    return false;
}

Json::Value texts_of(const Json::Value& entries, const char* key) {
    Json::Value texts(Json::arrayValue);
    for (const Json::Value& entry : entries) {
        texts.append(entry[key]);
    }
    return texts;
}

void check_boxes(const Check& check, const Json::Value& wanted) {
    const Json::Value& boxes = check.transcript["boxes"];
    if (wanted.size() != boxes.size()) {
        check.differ(check.place, std::to_string(wanted.size()) + " boxes",
                     std::to_string(boxes.size()) + ": " + summary(boxes));
    }
    for (Json::ArrayIndex i = 0; i < wanted.size() && i < boxes.size(); ++i) {
        check_box(check, wanted[i], boxes[i], place_of(check.place, i));
    }
}

// Each wanted command is found, in this order; others may stand between them.
void check_commands(const Check& check, const Json::Value& wanted) {
    const Json::Value& commands = check.transcript["commands"];
    Json::ArrayIndex at = 0;
    for (Json::ArrayIndex i = 0; i < wanted.size(); ++i) {
        Json::ArrayIndex found = at;
        while (found < commands.size() && !check.matcher.matches(wanted[i], commands[found])) {
            ++found;
        }
        if (found == commands.size()) {
            check.differ(place_of(check.place, i), compact(wanted[i]), compact(commands));
            return;
        }
        at = found + 1;
    }
}

void check_files(const Check& check, const Json::Value& wanted) {
    const Json::Value& files = check.transcript["files"];
    for (Json::ArrayIndex i = 0; i < wanted.size(); ++i) {
        const std::string place = place_of(check.place, i);
        unsigned found = 0;
        for (const Json::Value& file : files) {
            if (base::matches_wildcards(file["name"].asString(), wanted[i]["name"].asString())) {
                ++found;
                check_file_content(check, wanted[i], file, place);
            }
        }
        const bool counted = wanted[i].isMember("count");
        if (counted ? found != wanted[i]["count"].asUInt() : found == 0) {
            check.differ(place, wanted[i]["name"].asString(),
                         std::to_string(found) + " of " + compact(names_of(files)));
        }
    }
}

void check_no_files(const Check& check, const Json::Value& wanted) {
    for (const Json::Value& file : check.transcript["files"]) {
        for (const Json::Value& pattern : wanted) {
            if (base::matches_wildcards(file["name"].asString(), pattern.asString())) {
                check.differ(check.place, "no " + pattern.asString(), file["name"].asString());
            }
        }
    }
}

void check_log(const Check& check, const Json::Value& wanted) {
    for (const std::string& channel : wanted.getMemberNames()) {
        const Json::Value lines = log_texts(check.transcript["logs"][channel]);
        const Json::Value& rules = wanted[channel];
        const std::string place = place_of(check.place, channel);
        if (rules.isMember("exact")) {
            check.matcher.match(rules["exact"], lines, place_of(place, "exact"), check.mismatches);
        }
        for (const Json::Value& line : rules["contains"]) {
            if (!contains(check.matcher, lines, line)) {
                check.differ(place_of(place, "contains"), compact(line), compact(lines));
            }
        }
        check_none_with(check, lines, rules["none_with"], place_of(place, "none_with"));
    }
}

void check_host_calls(const Check& check, const Json::Value& wanted) {
    const Json::Value& calls = check.transcript["host_calls"];
    for (const Json::Value& pattern : wanted["contains"]) {
        if (find_call(calls, pattern.asString(), 0) == calls.size()) {
            check.differ(place_of(check.place, "contains"), pattern.asString(), compact(names_of(calls)));
        }
    }
    for (const Json::Value& pattern : wanted["none_of"]) {
        if (find_call(calls, pattern.asString(), 0) != calls.size()) {
            check.differ(place_of(check.place, "none_of"), "no " + pattern.asString(), "called");
        }
    }
    Json::ArrayIndex at = 0;
    for (const Json::Value& pattern : wanted["in_order"]) {
        const Json::ArrayIndex found = find_call(calls, pattern.asString(), at);
        if (found == calls.size()) {
            check.differ(place_of(check.place, "in_order"), pattern.asString(), compact(names_of(calls)));
            return;
        }
        at = found + 1;
    }
}

} // namespace stage

#include "standin/stage/box_watch.h"

#include "standin/base/text.h"
#include "standin/stage/dialog_watch.h"
#include "standin/stage/import_table.h"
#include "standin/stage/module_file.h"

#include <algorithm>

namespace stage {

namespace {

struct AnswerName {
    const char* name;
    int id;
};

const AnswerName kAnswers[] = {{"ok", IDOK}, {"cancel", IDCANCEL}, {"yes", IDYES}, {"no", IDNO}};

// The buttons of each style; the last one is the safe answer to a question.
struct BoxStyle {
    UINT style;
    int buttons[3];
    int safe;
};

const BoxStyle kStyles[] = {
    {MB_OK, {IDOK, 0, 0}, IDOK},
    {MB_OKCANCEL, {IDOK, IDCANCEL, 0}, IDCANCEL},
    {MB_YESNOCANCEL, {IDYES, IDNO, IDCANCEL}, IDCANCEL},
    {MB_YESNO, {IDYES, IDNO, 0}, IDNO},
};

const BoxStyle& box_style(UINT style) {
    for (const BoxStyle& known : kStyles) {
        if (known.style == (style & MB_TYPEMASK)) {
            return known;
        }
    }
    return kStyles[0];
}

bool has_button(const BoxStyle& style, int id) {
    return std::find(std::begin(style.buttons), std::end(style.buttons), id) != std::end(style.buttons);
}

int answer_id(const std::string& name) {
    for (const AnswerName& answer : kAnswers) {
        if (name == answer.name) {
            return answer.id;
        }
    }
    return 0;
}

std::string answer_name(int answer) {
    for (const AnswerName& known : kAnswers) {
        if (known.id == answer) {
            return known.name;
        }
    }
    return "not shown";
}

BoxWatch* g_watch = nullptr;
AnyFunction g_message_box = nullptr;

int WINAPI watched_message_box(HWND owner, const wchar_t* text, const wchar_t* caption, UINT style,
                               WORD language) {
    return g_watch->show(owner, text, caption, style, language);
}

std::string text_or_empty(const wchar_t* text) {
    return text == nullptr ? std::string() : base::to_utf8(text);
}

} // namespace

void BoxWatch::prepare(const Json::Value& scenario) {
    answers_ = scenario["answers"];
    screenshots_ = scenario["box_screenshots"];
    system_buttons_ = scenario["box_buttons"].asString() == "system";
}

void BoxWatch::install(HMODULE module) {
    g_watch = this;
    replace_import(module,
                   {"MessageBoxExW", reinterpret_cast<AnyFunction>(&watched_message_box), &g_message_box});
}

bool BoxWatch::take_unanswered(OpenBox& box) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (open_.empty() || open_.back().answered) {
        return false;
    }
    open_.back().answered = true;
    box = open_.back();
    return true;
}

bool BoxWatch::any_open() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return !open_.empty();
}

// The scenario's answer for the first number that has one. Later boxes get the last answer of a list.
BoxWatch::Choice BoxWatch::choose(const std::vector<unsigned>& numbers, UINT style) {
    const BoxStyle& known = box_style(style);
    for (unsigned number : numbers) {
        const std::string key = std::to_string(number);
        if (!answers_.isMember(key)) {
            continue;
        }
        const Json::Value& given = answers_[key];
        const unsigned time = seen_[number]++;
        const Json::Value& one = given.isArray() ? given[std::min(time, given.size() - 1)] : given;
        const int id = answer_id(one.asString());
        return has_button(known, id) ? Choice{id, false} : Choice{known.safe, true};
    }
    return {known.safe, known.style != MB_OK};
}

Json::Value BoxWatch::describe(HWND owner, const wchar_t* text, const wchar_t* caption, UINT style,
                               WORD language, const std::vector<unsigned>& numbers) const {
    Json::Value entry(Json::objectValue);
    entry["text_numbers"] = Json::Value(Json::arrayValue);
    for (unsigned number : numbers) {
        entry["text_numbers"].append(number);
    }
    entry["text"] = text_or_empty(text);
    entry["caption"] = text_or_empty(caption);
    entry["style"] = static_cast<Json::UInt>(style);
    entry["language"] = static_cast<Json::UInt>(language);
    entry["owner"] = dialogs_.name_of_window(owner);
    entry["answer"] = Json::Value();
    return entry;
}

int BoxWatch::show(HWND owner, const wchar_t* text, const wchar_t* caption, UINT style, WORD language) {
    const std::vector<unsigned> numbers = module_.numbers_of(text == nullptr ? std::wstring() : text);
    OpenBox box;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const Choice choice = choose(numbers, style);
        Json::Value entry = describe(owner, text, caption, style, language, numbers);
        entry["unanswered"] = choice.unanswered;
        box.answer = choice.answer;
        box.index = transcript_.append("boxes", entry);
        for (unsigned number : numbers) {
            if (box.screenshot.empty()) {
                box.screenshot = screenshots_.get(std::to_string(number), "").asString();
            }
        }
        open_.push_back(box);
    }
    const int answer = reinterpret_cast<decltype(&::MessageBoxExW)>(g_message_box)(
        owner, text, caption, style, system_buttons_ ? WORD{0} : language);
    const std::lock_guard<std::mutex> lock(mutex_);
    open_.pop_back();
    transcript_.amend("boxes", box.index, "answer", answer_name(answer));
    return answer;
}

} // namespace stage

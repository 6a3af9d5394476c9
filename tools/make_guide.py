#!/usr/bin/env python3
"""make_guide.py [--check]: writes the generated blocks of the user guide: every message from the string table with its
cause and cure (docs/guide/data/messages.json), every answer of the client from the plugin's own table, every log line
(docs/guide/data/log_lines.json). --check writes nothing and fails when a page is stale. Either way it fails when a text
has no entry, an entry no text, or a log line of the sources is not explained."""

import argparse
import json
import pathlib
import re
import sys

from resource_texts import LANGUAGES, ROOT, captions, plain_caption, text_numbers, texts

GUIDE = ROOT / "docs/guide"
LAYERS = ("common", "host", "scene", "submit", "dialog", "plugin")
BLOCK = re.compile(r"(<!-- generated: ([^>]+?) -->\n).*?(<!-- /generated -->)", re.DOTALL)

WORDS = {
    "en": {
        "text": "Text", "when": "When", "cause": "Cause", "cure": "What to do", "title": "Title of the box",
        "no_title": "none", "buttons": "Buttons", "log": "Log line", "code": "Code", "line": "Log line",
        "level": "Level", "meaning": "Meaning", "number": "Number", "english": "English", "chinese": "Chinese",
        "empty": "(nothing)",
        "button_names": {"ok": "OK", "ok_cancel": "OK, Cancel", "yes_no": "Yes, No"},
    },
    "zh": {
        "text": "文本", "when": "何时出现", "cause": "原因", "cure": "处理方法", "title": "消息框标题",
        "no_title": "无", "buttons": "按钮", "log": "日志行", "code": "代码", "line": "日志行",
        "level": "级别", "meaning": "含义", "number": "编号", "english": "英文", "chinese": "中文",
        "empty": "（无）",
        "button_names": {"ok": "确定", "ok_cancel": "确定、取消", "yes_no": "是、否"},
    },
}
# Buttons that Windows gives a message box.
BOX_BUTTONS = {"en": {"OK", "Cancel", "Yes", "No"}, "zh": {"确定", "取消", "是", "否"}}


class Problems:
    def __init__(self) -> None:
        self.found = []

    def add(self, text: str) -> None:
        self.found.append(text)


def load(name: str) -> dict:
    return json.loads((GUIDE / "data" / name).read_text(encoding="utf-8"))


def product_sources() -> dict:
    """Name → text, comments and includes left out."""
    sources = {}
    for layer in LAYERS:
        for path in sorted((ROOT / layer).glob("*.cpp")) + sorted((ROOT / layer).glob("*.h")):
            text = re.sub(r"^\s*(//|#\s*include).*$", "", path.read_text(encoding="utf-8"), flags=re.MULTILINE)
            sources[path.relative_to(ROOT).as_posix()] = text
    return sources


# A character, or literals that the compiler joins. The prefix tells wide ones apart.
LITERAL = re.compile(r"'(?:[^'\\]|\\.)+'|((?:\b(?:L|u8|u|U))?)((?:\"(?:[^\"\\\n]|\\.)*\"\s*)+)")


def literals(source: str):
    """(wide, text) of every string literal."""
    for match in LITERAL.finditer(source):
        if match.group(2) is not None:
            parts = re.findall(r'"((?:[^"\\\n]|\\.)*)"', match.group(2))
            text = re.sub(r"\\(.)", lambda escape: {"n": "\n"}.get(escape.group(1), escape.group(1)), "".join(parts))
            yield match.group(1) == "L", text


def reply_codes() -> list:
    """(code, text name, level, log text) as the plugin has them."""
    source = (ROOT / "submit/reply_codes.cpp").read_text(encoding="utf-8")
    table = re.search(r"kReplyCodes\[\] = \{(.*?)\n\};", source, re.DOTALL).group(1)
    rows = re.findall(r'\{(\d+), (IDS_\w+), (?:kNoCaption|IDS_CAPTION), k(\w+),\s*((?:"(?:[^"\\]|\\.)*"\s*)+)\}', table)
    if len(rows) != table.count("{"):
        raise ValueError("submit/reply_codes.cpp: rows of another form than this tool reads")
    return [(int(code), name, level.upper(), "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', text)))
            for code, name, level, text in rows]


def check_texts(data: dict, sources: dict, problems: Problems) -> None:
    numbers = text_numbers()
    entries = [entry["text"] for entry in data["messages"]]
    entries += [name for place in data["labels"] for name in place["texts"]]
    for name in sorted(set(numbers) - set(entries)):
        problems.add(f"messages.json: no entry for {name} ({numbers[name]})")
    for name in sorted(set(entries) - set(numbers)):
        problems.add(f"messages.json: {name} is no text of the module")
    for name in sorted({name for name in entries if entries.count(name) > 1}):
        problems.add(f"messages.json: {name} stands there twice")
    for language in LANGUAGES:
        known = texts(language)
        for name in sorted(set(numbers) - {name for name, text in known.items() if text}):
            problems.add(f"resources/texts_{language}.rc: no text for {name}")
    code = "\n".join(sources.values())
    for name in sorted(set(entries)):
        if not re.search(rf"\b{name}\b", code):
            problems.add(f"messages.json: nothing in the product shows {name}")


def check_entries(data: dict, lines: dict, problems: Problems) -> None:
    logged = {line["text"] for line in lines["lines"]} | {row[3] for row in reply_codes()}
    for entry in data["messages"]:
        name = entry["text"]
        for key in ("when", "cause", "cure"):
            for language in LANGUAGES:
                if not entry.get(key, {}).get(language, "").strip():
                    problems.add(f"messages.json: {name} has no '{key}' in {language}")
        if entry["group"] not in data["groups"]:
            problems.add(f"messages.json: {name} is in an unknown group '{entry['group']}'")
        for line in entry.get("log", []):
            if line not in logged:
                problems.add(f"messages.json: {name} names a log line that is not in log_lines.json: {line}")
    with_entry = {entry["text"] for entry in data["messages"]}
    for code, name, _, _ in reply_codes():
        if name not in with_entry:
            problems.add(f"messages.json: no message for {name}, the box of answer {code}")


def check_log_lines(lines: dict, sources: dict, problems: Problems) -> None:
    found = {(wide, text) for source in sources.values() for wide, text in literals(source)}
    explained = {line["text"] for line in lines["lines"]} | {row[3] for row in reply_codes()}
    left_out = set(lines["not_logged"])
    for text in sorted({text for wide, text in found if not wide and " " in text.strip()} - explained - left_out):
        if "\n" not in text:
            problems.add(f"log_lines.json: a text of the sources is neither explained nor left out: {text!r}")
    for line in lines["lines"]:
        if (line.get("wide", False), line["text"]) not in found:
            problems.add(f"log_lines.json: no source writes {line['text']!r}")
        for language in LANGUAGES:
            if not line.get(language, "").strip():
                problems.add(f"log_lines.json: {line['text']!r} is not explained in {language}")
    for text in sorted(left_out - {text for _, text in found}):
        problems.add(f"log_lines.json: nothing in the sources is {text!r}")


def channels_of_scenarios():
    """(file, channel, level, message) of every log line that an end-to-end test has seen."""
    for path in sorted((ROOT / "tests/scenarios").glob("*.json")):
        scenario = json.loads(path.read_text(encoding="utf-8"))
        looks = [step["expect"] for step in scenario.get("steps", []) if "expect" in step]
        for look in looks + [scenario.get("expect", {})]:
            for channel, wanted in look.get("log", {}).items():
                for line in wanted.get("exact", []) + wanted.get("contains", []):
                    pattern = line if isinstance(line, str) else line.get("$pattern", line.get("$contains", ""))
                    match = re.match(r"\[(\w+)\] (.+)", pattern)
                    if match:
                        yield path.name, channel, match.group(1), match.group(2)


def check_against_scenarios(lines: dict, problems: Problems) -> None:
    rows = list(lines["lines"]) + [{"channel": "qfx_http", "level": level, "text": text}
                                   for _, _, level, text in reply_codes()]
    for name, channel, level, message in channels_of_scenarios():
        if not any(row["channel"] == channel and row["level"] == level
                   and (row["text"].strip() in message or message.strip("*").strip() in row["text"]) for row in rows):
            problems.add(f"{name}: log line without an explanation: {channel} [{level}] {message}")


def check_bold(problems: Problems) -> None:
    """Bold is for what stands on the screen, and nothing else: so a renamed button shows up here."""
    for language in LANGUAGES:
        known = captions(language) | BOX_BUTTONS[language]
        for path in sorted((GUIDE / language).glob("*.md")):
            for span in re.findall(r"\*\*(.+?)\*\*", path.read_text(encoding="utf-8")):
                if plain_caption(span) not in known:
                    problems.add(f"{path.relative_to(ROOT)}: nothing on the screen is called '{span}'")


def quote(text: str) -> str:
    return "\n".join(("> " + line).rstrip() for line in text.split("\n"))


def code_span(text: str) -> str:
    return f"`{text}`"


def cell(text: str) -> str:
    return text.replace("|", "\\|").replace("\n", "<br>")


def message_block(entry: dict, language: str) -> str:
    words, numbers = WORDS[language], text_numbers()
    other = "zh" if language == "en" else "en"
    caption = entry.get("caption", "IDS_CAPTION")
    parts = [f"### {words['text']} {numbers[entry['text']]}", "", quote(texts(language)[entry["text"]]), "",
             "<!-- -->", "", quote(texts(other)[entry["text"]]), ""]
    if entry["group"] != "notices":
        title = texts(language)[caption] if caption else words["no_title"]
        buttons = words["button_names"][entry.get("buttons", "ok")]
        parts.append(f"- {words['title']}: {title}. {words['buttons']}: {buttons}." if language == "en"
                     else f"- {words['title']}：{title}。{words['buttons']}：{buttons}。")
    colon = ": " if language == "en" else "："
    parts += [f"- {words[key]}{colon}{entry[key][language]}" for key in ("when", "cause", "cure")]
    parts += [f"- {words['log']}{colon}{code_span(line.strip())}" for line in entry.get("log", [])]
    return "\n".join(parts) + "\n"


def messages_block(group: str, data: dict, language: str) -> str:
    return "\n".join(message_block(entry, language) for entry in data["messages"] if entry["group"] == group)


def labels_block(data: dict, language: str) -> str:
    words, numbers = WORDS[language], text_numbers()
    english, chinese = texts("en"), texts("zh")
    parts = []
    for place in data["labels"]:
        parts += [place["place"][language][0].upper() + place["place"][language][1:], "",
                  f"| {words['number']} | {words['english']} | {words['chinese']} |", "|---|---|---|"]
        parts += [f"| {numbers[name]} | {cell(english[name])} | {cell(chinese[name])} |" for name in place["texts"]]
        parts.append("")
    return "\n".join(parts)


def replies_block(data: dict, language: str) -> str:
    words, numbers = WORDS[language], text_numbers()
    causes = {entry["text"]: entry for entry in data["messages"]}
    anchor = words["text"].lower()
    rows = [f"| {words['code']} | {words['text']} | {words['line']} | {words['cause']} |", "|---|---|---|---|"]
    for code, name, level, line in reply_codes():
        link = f"[{numbers[name]}](messages.md#{anchor}-{numbers[name]})"
        rows.append(f"| {code} | {link} | {code_span(f'[{level}] {line}')} | {cell(causes[name]['cause'][language])} |")
    return "\n".join(rows) + "\n"


def log_block(channel: str, lines: dict, language: str) -> str:
    words = WORDS[language]
    rows = [f"| {words['line']} | {words['meaning']} |", "|---|---|"]
    for line in lines["lines"]:
        if line["channel"] == channel:
            shown = line.get("before", "") + line["text"].strip() + (" …" if line.get("more") else "")
            rows.append(f"| {code_span('[' + line['level'] + '] ' + shown)} | {cell(line[language])} |")
    return "\n".join(rows) + "\n"


def block(name: str, data: dict, lines: dict, language: str) -> str:
    kind, _, detail = name.partition(" ")
    if kind == "messages" and detail in data["groups"]:
        return messages_block(detail, data, language)
    if kind == "log" and any(line["channel"] == detail for line in lines["lines"]):
        return log_block(detail, lines, language)
    if name == "labels":
        return labels_block(data, language)
    if name == "replies":
        return replies_block(data, language)
    raise ValueError(f"an unknown block '{name}'")


def wanted_blocks(data: dict, lines: dict) -> set:
    channels = {line["channel"] for line in lines["lines"]}
    return ({f"messages {group}" for group in data["groups"]} | {f"log {channel}" for channel in channels}
            | {"labels", "replies"})


def make_pages(data: dict, lines: dict, problems: Problems) -> dict:
    """Path → text as it should be, of every page that has generated blocks."""
    pages = {}
    for language in LANGUAGES:
        used = []
        for path in sorted((GUIDE / language).glob("*.md")):
            text = path.read_text(encoding="utf-8")
            names = [match.group(2) for match in BLOCK.finditer(text)]
            if names:
                used += names
                pages[path] = BLOCK.sub(
                    lambda match, tongue=language: match.group(1) + "\n"
                    + block(match.group(2), data, lines, tongue).rstrip() + "\n\n" + match.group(3), text)
        for name in sorted(wanted_blocks(data, lines)):
            if used.count(name) != 1:
                problems.add(f"docs/guide/{language}: the block '{name}' stands there {used.count(name)} times, not once")
    return pages


def main() -> int:
    parser = argparse.ArgumentParser(description="Writes the generated blocks of the user guide.")
    parser.add_argument("--check", action="store_true", help="write nothing; fail when a page is stale")
    arguments = parser.parse_args()
    sys.stdout.reconfigure(encoding="utf-8")
    data, lines, sources, problems = load("messages.json"), load("log_lines.json"), product_sources(), Problems()
    check_texts(data, sources, problems)
    check_entries(data, lines, problems)
    check_log_lines(lines, sources, problems)
    check_against_scenarios(lines, problems)
    check_bold(problems)
    if not problems.found:
        for path, text in make_pages(data, lines, problems).items():
            if path.read_text(encoding="utf-8") == text:
                continue
            if arguments.check:
                problems.add(f"{path.relative_to(ROOT)}: stale; run tools/make_guide.py")
            else:
                path.write_text(text, encoding="utf-8")
                print(f"written: {path.relative_to(ROOT)}")
    for problem in problems.found:
        print(problem)
    print(f"{len(data['messages'])} messages, {len(reply_codes())} answers, {len(lines['lines'])} log lines: "
          f"{len(problems.found)} problems")
    return 1 if problems.found else 0


if __name__ == "__main__":
    sys.exit(main())

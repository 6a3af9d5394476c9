#!/usr/bin/env python3
"""make_log_words.py FILE: writes what each line of the plugin's logs means, in both languages, as rows of a C++ table for
the diagnostics. The words are those of the guide; for the client's replies, those of the message boxes."""

import json
import pathlib
import sys

from make_guide import ROOT, reply_codes, texts

REPLIES = "qfx_http"


def one_line(text: str) -> str:
    return " ".join(text.replace("`", "").split())


def literal(text: str) -> str:
    return json.dumps(text, ensure_ascii=False)


def row(channel: str, before: str, text: str, more: bool, english: str, chinese: str) -> str:
    words = ", ".join(literal(part) for part in (channel, before, text))
    return f"    {{{words}, {'true' if more else 'false'}, {literal(one_line(english))}, {literal(one_line(chinese))}}},\n"


def main() -> None:
    lines = json.loads((ROOT / "docs/guide/data/log_lines.json").read_text(encoding="utf-8"))["lines"]
    rows = [row(line["channel"], line.get("before", ""), line["text"], line.get("more", False), line["en"], line["zh"])
            for line in lines]
    english, chinese = texts("en"), texts("zh")
    rows += [row(REPLIES, "", log_text, False, english[name], chinese[name])
             for _, name, _, log_text in reply_codes()]
    target = pathlib.Path(sys.argv[1])
    target.parent.mkdir(parents=True, exist_ok=True)
    target.write_text("".join(rows), encoding="utf-8")


if __name__ == "__main__":
    main()

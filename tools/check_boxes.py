#!/usr/bin/env python3
"""Every text that the plugin shows in a message box stands in the one table of boxes, tests/scenarios/all_boxes.json.

A text that is shown elsewhere is listed here with its place; a new text has to go into one of the two.
"""
import json
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

ELSEWHERE = {
    "LIBRARY_DESCRIPTION": "the host's list of plugins",
    "CLASS_CATEGORY": "the host's list of plugins",
    "CLASS_NAME": "the host's list of plugins",
    "ACTION_OPEN": "menu",
    "ACTION_ABOUT": "menu",
    "MENU_TITLE": "menu",
    "EARLIER_MENU_TITLE": "menu, to find an earlier edition's",
    "ABOUT_CAPTION": "caption",
    "CAPTION": "caption",
    "NAME_CAPTION": "caption",
    "LANGUAGE_SWITCH": "nowhere: a switch",
    "YES": "camera table",
    "NO": "camera table",
}
ELSEWHERE_BEGINNINGS = {"FORMAT_": "list of image formats", "COLUMN_": "camera table", "NOTICE_": "list of notices"}


def main():
    header = (ROOT / "resources/resource_ids.h").read_text(encoding="utf-8")
    texts = {name: int(number) for name, number in re.findall(r"#define IDS_(\w+) (\d+)", header)}
    scenario = json.loads((ROOT / "tests/scenarios/all_boxes.json").read_text(encoding="utf-8"))
    in_table = {box["text"] for box in scenario["expect"]["boxes"]}
    problems = []
    for name, number in texts.items():
        elsewhere = name in ELSEWHERE or any(name.startswith(begin) for begin in ELSEWHERE_BEGINNINGS)
        if elsewhere == (number in in_table):
            where = "is in the table of boxes and said to be shown elsewhere" if elsewhere else "is in no row"
            problems.append(f"text {number} (IDS_{name}) {where}")
    for name in ELSEWHERE:
        if name not in texts:
            problems.append(f"IDS_{name} is listed here, and there is no such text")
    for problem in problems:
        print(f"tests/scenarios/all_boxes.json: {problem}", file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())

"""Reads the module's texts and the captions of its dialogs from resources/, for the tools that write or check pages."""

import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent
LANGUAGES = ("en", "zh")
STRING = r'"((?:[^"\\]|\\.|"")*)"'
ESCAPES = {"n": "\n", "\\": "\\", "t": "\t"}


def unescaped(text: str) -> str:
    text = text.replace('""', '"')
    return re.sub(r"\\(.)", lambda match: ESCAPES.get(match.group(1), match.group(1)), text)


def without_comments(text: str) -> str:
    return re.sub(r"^\s*//.*$", "", text, flags=re.MULTILINE)


def text_numbers() -> dict:
    """{"IDS_CAPTION": 49, …}"""
    header = (ROOT / "resources/resource_ids.h").read_text(encoding="utf-8")
    return {name: int(number) for name, number in re.findall(r"#define (IDS_\w+) (\d+)", header)}


def texts(language: str) -> dict:
    """{"IDS_CAPTION": "Tarvo Rendering", …}"""
    source = without_comments((ROOT / f"resources/texts_{language}.rc").read_text(encoding="utf-8"))
    return {name: unescaped(text) for name, text in re.findall(r"^\s+(IDS_\w+)\s+" + STRING, source, re.MULTILINE)}


def plain_caption(caption: str) -> str:
    """A caption as a person reads it: without access keys, colons and dots at its end."""
    caption = re.sub(r"\(&\w\)", "", caption).replace("&", "")
    return re.sub(r"<[^>]*>", "", caption).rstrip(":：.…").strip()


def captions(language: str) -> set:
    source = without_comments((ROOT / f"resources/dialogs_{language}.rc").read_text(encoding="utf-8"))
    found = {plain_caption(unescaped(text)) for text in re.findall(STRING, source)}
    return found | {plain_caption(text) for text in texts(language).values()}

#!/usr/bin/env python3
"""html_guide.py FOLDER: makes the user guide as it is installed: one folder for each language with a page for each
Markdown page, its pictures and an index for the search. Needs no network and no server to be read. Fails when a page
links to what is not shipped."""

import html
import json
import pathlib
import re
import shutil
import sys

from markdown_it import MarkdownIt

from check_docs import anchor

ROOT = pathlib.Path(__file__).resolve().parent.parent
GUIDE = ROOT / "docs/guide"
LOOK = ROOT / "packaging/guide"
# In the order of the list at the left of every page.
PAGES = ["README", "first-submission", "fields", "messages", "reply-codes", "troubleshooting", "logs", "virus-checks",
         "install", "deployment"]
WORDS = {
    "en": {"code": "en", "other": "zh", "other_name": "中文版", "search": "Search the guide",
           "none": "Nothing found.", "guide": "Tarvo Rendering: user guide"},
    "zh": {"code": "zh-CN", "other": "en", "other_name": "English", "search": "搜索用户指南",
           "none": "未找到任何内容。", "guide": "Tarvo Rendering：用户指南"},
}
# Besides the pages and pictures, in the folder of each language.
LANGUAGE_FILES = ["search-index.js"]
# What lies elsewhere once it is installed. What is only in the project is named by its text alone.
ELSEWHERE = {"packaging/INSTALL.txt": "../../INSTALL.txt"}
NOT_SHIPPED = {"docs/formats/README.md", "docs/threat-model.md"}
COMMENT = re.compile(r"<!--.*?-->\s*", re.DOTALL)
SECTION_TEXT = 8000  # characters: a longer section is found too often to be a useful answer of the search

HEAD = """<!DOCTYPE html>
<html lang="{code}">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>{title} - {guide}</title>
<link rel="stylesheet" href="../guide.css">
</head>
<body>
<nav>
<form id="search" hidden><input type="search" placeholder="{search}" aria-label="{search}" data-none="{none}"></form>
<ul>
{pages}</ul>
<p><a href="../{other}/{file}" lang="{other}">{other_name}</a></p>
</nav>
<main>
<div id="results" role="status"></div>
<article>
"""
FOOT = """</article>
</main>
<script src="search-index.js"></script>
<script src="../search.js"></script>
</body>
</html>
"""


class Problem(Exception):
    """The guide cannot be made as it stands."""


def page_file(name: str) -> str:
    return "index.html" if name == "README" else f"{name}.html"


def shipped_target(page: pathlib.Path, target: str):
    """Where a link of `page` leads in the installed guide; None when that is not shipped."""
    if re.match(r"[a-z]+:", target):
        return target
    name, mark, heading = target.partition("#")
    if not name:
        return target
    path = (page.parent / name).resolve()
    inside = path.relative_to(ROOT).as_posix()
    if inside in ELSEWHERE:
        return ELSEWHERE[inside]
    if inside in NOT_SHIPPED:
        return None
    if path.suffix == ".md" and path.parent.parent == GUIDE and path.stem in PAGES:
        folder = "" if path.parent == page.parent else f"../{path.parent.name}/"
        return folder + page_file(path.stem) + mark + heading
    raise Problem(f"{page.relative_to(ROOT)}: {target} is neither shipped nor known to be left out")


class Page:
    """One Markdown page: its tokens with installed links, named headings and the pictures that it shows."""

    def __init__(self, path: pathlib.Path):
        self.path = path
        self.markdown = MarkdownIt("commonmark", {"html": False}).enable("table")
        text = COMMENT.sub("", path.read_text(encoding="utf-8").replace("<!-- -->", "\n\n"))
        self.tokens = self.markdown.parse(text)
        self.pictures = []
        self.sections = []
        self.title = ""
        seen = {}
        for place, token in enumerate(self.tokens):
            if token.type == "heading_open":
                self.name_heading(token, self.tokens[place + 1], seen)
            elif token.type == "inline":
                self.follow_links(token)
                if not token.map is None:
                    self.note_text(token)
            elif token.type in ("fence", "code_block"):
                self.note(token.content)

    def name_heading(self, token, inline, seen: dict) -> None:
        name = anchor(inline.content)
        number = seen.get(name, 0)
        seen[name] = number + 1
        name = f"{name}-{number}" if number else name
        token.attrSet("id", name)
        title = self.plain(inline)
        self.title = self.title or title
        self.sections.append({"anchor": name, "title": title, "text": ""})

    def follow_links(self, inline) -> None:
        for child in inline.children:
            if child.type == "image":
                picture = (self.path.parent / child.attrs["src"]).resolve()
                self.pictures.append(picture)
                child.attrs["src"] = picture.name
            elif child.type == "link_open":
                target = shipped_target(self.path, child.attrs["href"])
                if target is None:
                    child.type = "left_out"
                    child.tag = "span"
                    child.attrs = {}
                else:
                    child.attrs["href"] = target
            elif child.type == "link_close":
                child.tag = self.opening_tag(inline, child)

    @staticmethod
    def opening_tag(inline, closing) -> str:
        """Links do not nest: the opening one is the last before the closing one."""
        before = inline.children[:[id(child) for child in inline.children].index(id(closing))]
        return next(child.tag for child in reversed(before) if child.nesting == 1 and child.level == closing.level)

    @staticmethod
    def plain(inline) -> str:
        return "".join(" " if child.type in ("softbreak", "hardbreak") else child.content
                       for child in inline.children)

    def note_text(self, inline) -> None:
        self.note(self.plain(inline))

    def note(self, text: str) -> None:
        if self.sections and text.strip() != self.sections[-1]["title"]:
            section = self.sections[-1]
            section["text"] = (section["text"] + " " + " ".join(text.split())).strip()

    def body(self) -> str:
        rendered = self.markdown.renderer.render(self.tokens, self.markdown.options, {})
        return rendered.replace("<table>", '<div class="wide"><table>').replace("</table>", "</table></div>")


def page_list(pages: dict, current: str) -> str:
    lines = []
    for name, page in pages.items():
        here = ' aria-current="page"' if name == current else ""
        lines.append(f'<li><a href="{page_file(name)}"{here}>{html.escape(page.title)}</a></li>\n')
    return "".join(lines)


def search_index(pages: dict) -> str:
    entries = []
    for name, page in pages.items():
        for section in page.sections:
            if len(section["text"]) > SECTION_TEXT:
                raise Problem(f"{page.path.name}: the section '{section['title']}' is too long for the search")
            entries.append([page_file(name) + "#" + section["anchor"], page.title, section["title"], section["text"]])
    # A script and no JSON file: a page from the disk may not read other files.
    return "var guideIndex = " + json.dumps(entries, ensure_ascii=False, indent=0) + ";\n"


def make_language(language: str, folder: pathlib.Path) -> int:
    folder.mkdir(parents=True)
    pages = {name: Page(GUIDE / language / f"{name}.md") for name in PAGES}
    more = {path.stem for path in (GUIDE / language).glob("*.md")} - set(PAGES)
    if more:
        raise Problem(f"not in the list of pages: {', '.join(sorted(more))}")
    for name, page in pages.items():
        head = HEAD.format(**{key: html.escape(word) for key, word in WORDS[language].items()},
                           title=html.escape(page.title), pages=page_list(pages, name), file=page_file(name))
        (folder / page_file(name)).write_text(head + page.body() + FOOT, encoding="utf-8", newline="\n")
        for picture in page.pictures:
            shutil.copyfile(picture, folder / picture.name)
    (folder / LANGUAGE_FILES[0]).write_text(search_index(pages), encoding="utf-8", newline="\n")
    return len(pages)


def main() -> int:
    out = pathlib.Path(sys.argv[1])
    try:
        count = sum(make_language(language, out / language) for language in WORDS)
        for name in ("guide.css", "search.js"):
            shutil.copyfile(LOOK / name, out / name)
    except Problem as problem:
        print(problem, file=sys.stderr)
        return 1
    print(f"{count} pages of the guide written")
    return 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""guide_test.py RELEASE BIN PREFIX OUT: the user guide as the zip brings it: every link, anchor and picture in it, both
languages, and the search, which runs as it stands in Node.js."""

import html.parser
import json
import pathlib
import re
import shutil
import subprocess
import sys
import unittest
import urllib.parse
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from resource_texts import text_numbers  # noqa: E402

RELEASE, _, _, OUT = (pathlib.Path(argument).resolve() for argument in sys.argv[1:5])
PACKAGE = "ProgramData/Autodesk/ApplicationPlugins/TarvoRendering/"
LANGUAGES = {"en": "en", "zh": "zh-CN"}
SEARCH = """
const fs = require("fs");
const [search, index, query] = process.argv.slice(1);
const { findSections, excerpt } = require(search);
const sections = new Function(fs.readFileSync(index, "utf8") + "return guideIndex;")();
const found = findSections(sections, query);
console.log(JSON.stringify(found.map(entry => [entry[0], excerpt(entry[3], query)])));
"""

# As much of a browser's page as the search touches. Prints whether the field shows, and what is below it after typing.
TYPE = """
const fs = require("fs");
const vm = require("vm");
const [search, index, typed, ...clicked] = process.argv.slice(1);
const handlers = {};
function element(name) {
    return {
        name, children: [], attributes: { hidden: "", "data-none": "NONE" }, text: "",
        set textContent(text) { this.text = text; this.children = []; },
        get textContent() { return this.text + this.children.map(child => child.textContent).join(""); },
        appendChild(child) { this.children.push(child); },
        removeAttribute(key) { delete this.attributes[key]; },
        getAttribute(key) { return this.attributes[key]; },
        addEventListener(event, handler) { handlers[name + "." + event] = handler; },
        querySelector() { return field; },
    };
}
const field = element("field"), form = element("search"), results = element("results");
const document = {
    getElementById: id => ({ search: form, results })[id], createElement: element,
    createTextNode: text => ({ textContent: text, children: [] }),
};
const page = vm.createContext({ document });
for (const file of [index, search]) { vm.runInContext(fs.readFileSync(file, "utf8"), page); }
field.value = typed;
handlers["field.input"]();
if (clicked.length) { handlers["results.click"]({ target: { tagName: "A" } }); }
let stopped = false;
handlers["search.submit"]({ preventDefault() { stopped = true; } });
const links = results.children.map(line => line.children[0].href);
console.log(JSON.stringify({ shows: !("hidden" in form.attributes), links, text: results.textContent, stopped }));
"""


class Page(html.parser.HTMLParser):
    def __init__(self, path: pathlib.Path):
        super().__init__()
        self.path = path
        self.links, self.pictures, self.anchors, self.parts = [], [], [], []
        self.language = None
        self.open_tags = []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attrs):
        attrs = dict(attrs)
        if tag not in ("meta", "link", "img", "br", "hr", "input"):
            self.open_tags.append(tag)
        if tag == "html":
            self.language = attrs["lang"]
        if "id" in attrs:
            self.anchors.append(attrs["id"])
        if tag == "a":
            self.links.append(attrs["href"])
        if tag == "img":
            self.pictures.append(attrs["src"])
            assert attrs["alt"], f"{self.path}: a picture without words"
        if tag in ("link", "script"):
            self.parts.append(attrs["href" if tag == "link" else "src"])

    def handle_startendtag(self, tag, attrs):
        self.handle_starttag(tag, attrs)
        if self.open_tags and self.open_tags[-1] == tag:
            self.open_tags.pop()

    def handle_endtag(self, tag):
        assert self.open_tags.pop() == tag, f"{self.path}: {tag} closes something else"


class GuideTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(OUT, ignore_errors=True)
        with zipfile.ZipFile(next(RELEASE.glob("*.zip"))) as archive:
            archive.extractall(OUT)
        cls.package = OUT / PACKAGE
        cls.guide = cls.package / "Guide"
        cls.pages = {path.relative_to(cls.guide).as_posix(): Page(path) for path in cls.guide.rglob("*.html")}

    def test_01_both_languages_have_the_same_pages(self):
        names = {language: {name[3:] for name in self.pages if name.startswith(language + "/")} for language in LANGUAGES}
        self.assertEqual(names["en"], names["zh"])
        self.assertIn("index.html", names["en"])
        for name, page in self.pages.items():
            self.assertEqual(page.language, LANGUAGES[name[:2]], name)
            self.assertEqual(page.open_tags, [], name)

    def test_02_every_markdown_page_is_there(self):
        for language in LANGUAGES:
            wanted = {path.stem for path in (ROOT / "docs/guide" / language).glob("*.md")} - {"README"} | {"index"}
            self.assertEqual({name[3:-5] for name in self.pages if name.startswith(language + "/")}, wanted)

    def test_03_every_link_leads_to_a_file_and_to_an_anchor_in_it(self):
        for name, page in self.pages.items():
            self.assertEqual(len(page.anchors), len(set(page.anchors)), name)
            for link in map(urllib.parse.unquote, page.links):
                self.assertFalse(re.match(r"[a-z]+:", link), f"{name}: {link} needs the network")
                file, _, anchor = link.partition("#")
                target = (page.path.parent / file).resolve() if file else page.path.resolve()
                self.assertTrue(target.is_file(), f"{name}: {link}")
                self.assertTrue(target.is_relative_to(self.package.resolve()), f"{name}: {link}")
                if anchor:
                    other = self.pages[target.relative_to(self.guide.resolve()).as_posix()]
                    self.assertIn(anchor, other.anchors, f"{name}: {link}")

    def test_04_every_picture_and_part_is_there_and_is_used(self):
        used = set()
        for name, page in self.pages.items():
            for part in page.pictures + page.parts:
                path = (page.path.parent / part).resolve()
                self.assertTrue(path.is_file(), f"{name}: {part}")
                used.add(path)
        files = {path.resolve() for path in self.guide.rglob("*") if path.is_file()}
        self.assertEqual({path.name for path in files - used} - {page.path.name for page in self.pages.values()}, set())

    def test_05_every_message_has_its_anchor(self):
        data = json.loads((ROOT / "docs/guide/data/messages.json").read_text(encoding="utf-8"))
        numbers = text_numbers()
        for language, word in (("en", "text"), ("zh", "文本")):
            anchors = set(self.pages[f"{language}/messages.html"].anchors)
            self.assertGreater(len(data["messages"]), 30)
            for entry in data["messages"]:
                self.assertIn(f"{word}-{numbers[entry['text']]}", anchors)

    def test_06_every_page_leads_to_every_other_and_to_its_twin(self):
        for name, page in self.pages.items():
            language, file = name.split("/")
            wanted = {other[3:] for other in self.pages if other.startswith(language)}
            self.assertLessEqual(wanted, set(page.links), name)
            self.assertIn(f"../{'zh' if language == 'en' else 'en'}/{file}", page.links)

    def test_07_nothing_comes_from_the_network_and_every_text_reads_as_utf_8(self):
        for path in self.guide.rglob("*"):
            if path.suffix in (".html", ".js", ".css"):
                text = path.read_text(encoding="utf-8")
                self.assertIsNone(re.search(r"(?:src|href)=\"(?:https?:)?//|@import|url\(", text), path.name)

    # --- searching

    def run_script(self, script: str, language: str, *arguments: str):
        done = subprocess.run(["node", "-e", script, str(self.guide / "search.js"),
                               str(self.guide / language / "search-index.js"), *arguments],
                              check=True, capture_output=True, text=True, encoding="utf-8", timeout=60)
        return json.loads(done.stdout)

    def search(self, language: str, query: str) -> list:
        return self.run_script(SEARCH, language, query)

    def test_10_the_search_finds_words_wherever_they_stand(self):
        for language, query, expected in (
                ("en", "desktop client is not set up", "messages.html#text-81"),
                ("zh", "尚未设置 Tarvo 桌面客户端", "messages.html#文本-81"),
                ("en", "NETSTAT", "troubleshooting.html#the-scene-could-not-be-sent"),
                ("en", "12029", "troubleshooting.html#the-scene-could-not-be-sent"),
                ("zh", "12029", "troubleshooting.html#无法发送场景"),
                ("en", "10001", "reply-codes.html#the-clients-answers"),
                ("en", "unattended install", "install.html#unattended"),
                ("en", "lock ratio", "fields.html#editing-cameras")):
            found = self.search(language, query)
            self.assertIn(expected, [address for address, _ in found], f"{query}: {found[:3]}")

    def test_11_headings_come_first(self):
        found = [address for address, _ in self.search("en", "removing")]
        self.assertEqual(found[0], "install.html#removing")

    def test_12_what_is_nowhere_is_not_found(self):
        for query in ("xyzzy", "", "   ", "camera xyzzy", "<b>"):
            self.assertEqual(self.search("en", query), [], query)

    def test_13_an_excerpt_shows_the_word_with_what_is_around_it(self):
        for before, word, after in (parts for _, parts in self.search("en", "NetStat")):
            self.assertEqual(word, "netstat")
            self.assertLessEqual(len(before), 61)
            self.assertLessEqual(len(after), 61)

    def test_14_every_address_of_the_index_leads_somewhere(self):
        for language in LANGUAGES:
            text = (self.guide / language / "search-index.js").read_text(encoding="utf-8")
            entries = json.loads(text[len("var guideIndex = "):].rstrip().rstrip(";"))
            self.assertGreater(len(entries), 100)
            for address, page, heading, _ in entries:
                file, anchor = address.split("#")
                self.assertIn(anchor, self.pages[f"{language}/{file}"].anchors)
                self.assertTrue(page and heading)

    def test_15_what_is_typed_is_answered_on_the_page(self):
        answer = self.run_script(TYPE, "en", "unattended")
        self.assertTrue(answer["shows"] and answer["stopped"])
        self.assertIn("install.html#unattended", answer["links"])
        self.assertIn("Installing: Unattended", answer["text"])
        self.assertEqual(len(self.run_script(TYPE, "en", "the")["links"]), 20)
        self.assertEqual(self.run_script(TYPE, "en", "xyzzy")["text"], "NONE")
        self.assertEqual(self.run_script(TYPE, "en", " ")["text"], "")
        # A result on the same page: the list gives way.
        self.assertEqual(self.run_script(TYPE, "zh", "安装", "click")["links"], [])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]], verbosity=2)

#!/usr/bin/env python3
"""check_docs.py: every link and picture of every Markdown page leads to a file, and to a heading in it when it names
one; tables have as many cells in each row; every test that a page names exists; every picture is used; the ids of
docs/compatibility.md and those in the product's comments are the same, and each row names a test. One line for each
problem; the exit status is 1 when there is one."""

import pathlib
import re
import subprocess
import sys
import unicodedata

ROOT = pathlib.Path(__file__).resolve().parent.parent
FENCE = re.compile(r"^\s*```")
LINK = re.compile(r"!?\[(?:[^\[\]]|\[[^\]]*\])*\]\(([^)\s]+)\)")
CODE = re.compile(r"`[^`\n]*`")
HEADING = re.compile(r"^#{1,6}\s+(.*?)\s*$")
# A bold span that ends in a mark is no bold span to a Markdown reader when a letter follows at once.
BOLD = re.compile(r"\*\*(.+?)\*\*(.?)")
PICTURE_ENDINGS = (".png", ".jpg")
# A page names a test as `Suite.Name`, `program: Suite.Name` or `scenario.NAME`, in a list or table of tests.
TEST_NAME = re.compile(r"`((?:scenario|docs|fuzz|packaging|portable)\.[a-z0-9_]+|[A-Z]\w+\.[A-Z]\w+)`")
LAYERS = ("common", "host", "scene", "submit", "dialog", "plugin", "resources")
COMPATIBILITY_ID = re.compile(r"\bC-\d\d\b")
GTEST = re.compile(r"\bTEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\s*\)")


def listed(*patterns: str) -> list:
    output = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", *patterns], cwd=ROOT,
                            check=True, capture_output=True, text=True).stdout
    return sorted(path for path in (ROOT / line for line in output.splitlines()) if path.is_file())


def prose_lines(path: pathlib.Path):
    """(number, line) outside of code blocks."""
    inside = False
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        if FENCE.match(line):
            inside = not inside
        elif not inside:
            yield number, line


def anchor(heading: str) -> str:
    """The name that a heading is linked by: letters, digits, hyphens and underscores of it, in small letters."""
    text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading).replace("`", "").lower()
    kept = [sign for sign in text if sign in " -_" or unicodedata.category(sign)[0] in "LNM"]
    return "".join(kept).replace(" ", "-")


def anchors(path: pathlib.Path) -> set:
    found, seen = set(), {}
    for _, line in prose_lines(path):
        match = HEADING.match(line)
        if match:
            name = anchor(match.group(1))
            number = seen.get(name, 0)
            seen[name] = number + 1
            found.add(f"{name}-{number}" if number else name)
    return found


def check_link(page: pathlib.Path, target: str) -> str:
    """Empty when the link leads somewhere. Addresses on the net are not tried."""
    if re.match(r"[a-z]+:", target):
        return ""
    name, _, heading = target.partition("#")
    path = (page.parent / name).resolve() if name else page
    if not path.exists():
        return f"no such file: {target}"
    if ROOT not in path.parents:
        return f"leads out of the project: {target}"
    if heading and path.suffix == ".md" and heading not in anchors(path):
        return f"no such heading: {target}"
    return ""


def cells(line: str) -> int:
    return len(re.findall(r"(?<!\\)\|", line.strip())) - 1


def check_tables(lines: list) -> list:
    problems, width = [], 0
    for number, line in lines:
        if not line.startswith("|"):
            width = 0
        elif width == 0:
            width = cells(line)
        elif cells(line) != width:
            problems.append((number, f"{cells(line)} cells, the table has {width}"))
    return problems


def check_page(page: pathlib.Path, used_pictures: set) -> list:
    lines = list(prose_lines(page))
    problems = check_tables(lines)
    for number, line in lines:
        for target in LINK.findall(CODE.sub("code", line)):
            problem = check_link(page, target)
            if problem:
                problems.append((number, problem))
            used_pictures.add((page.parent / target.partition("#")[0]).resolve())
        if any(re.match(r"\W", span[-1]) and re.match(r"\w", after) for span, after in BOLD.findall(line)):
            problems.append((number, "a bold span ends in a mark and a letter follows: Markdown does not take it"))
    name = page.relative_to(ROOT)
    return [f"{name}:{number}: {problem}" for number, problem in problems]


def known_tests() -> set:
    names = {f"scenario.{path.stem}" for path in listed("tests/scenarios/*.json")}
    programs = listed("tests/packaging/*_test.py", "tests/packaging/*_test.sh")
    names |= {f"packaging.{path.stem[:-len('_test')]}" for path in programs}
    for path in listed("tests/*.cmake", "tests/CMakeLists.txt", "tests/**/*.cmake"):
        names |= set(re.findall(r"add_test\(NAME ([\w.]+)", path.read_text(encoding="utf-8")))
        names |= {f"fuzz.{name}" for name in re.findall(r"add_fuzz_target\((\w+) \d", path.read_text(encoding="utf-8"))}
    for path in listed("tests/*.cpp"):
        names |= {f"{suite}.{name}" for suite, name in GTEST.findall(path.read_text(encoding="utf-8"))}
    return names


def check_tests_named(pages: list) -> list:
    known, problems = known_tests(), []
    for page in pages:
        for number, line in prose_lines(page):
            for name in TEST_NAME.findall(line):
                if name not in known:
                    problems.append(f"{page.relative_to(ROOT)}:{number}: there is no test {name}")
    return problems


def check_compatibility() -> list:
    """Every id in the product's comments has a row, every row has a comment and a test."""
    page = ROOT / "docs/compatibility.md"
    name = page.relative_to(ROOT)
    rows = [line for _, line in prose_lines(page) if line.startswith("| C-")]
    ids = [line.split("|")[1].strip() for line in rows]
    problems = [f"{name}: {number} has two rows" for number in sorted({row for row in ids if ids.count(row) > 1})]
    problems += [f"{name}: {number} names no test" for number, line in zip(ids, rows)
                 if not TEST_NAME.search(line.split("|")[4])]
    used = {}
    for path in listed(*(f"{layer}/*" for layer in LAYERS)):
        for number in COMPATIBILITY_ID.findall(path.read_text(encoding="utf-8")):
            used.setdefault(number, path.relative_to(ROOT))
    problems += [f"{used[number]}: {number} has no row in {name}" for number in sorted(set(used) - set(ids))]
    problems += [f"{name}: no comment of the product gives {number}" for number in sorted(set(ids) - set(used))]
    return problems


def main() -> int:
    sys.stdout.reconfigure(encoding="utf-8")
    pages, used_pictures = listed("*.md"), set()
    problems = [problem for page in pages for problem in check_page(page, used_pictures)]
    problems += check_tests_named(pages) + check_compatibility()
    for picture in listed("docs"):
        if picture.suffix in PICTURE_ENDINGS and picture not in used_pictures:
            problems.append(f"{picture.relative_to(ROOT)}: no page shows it")
    for problem in problems:
        print(problem)
    print(f"{len(pages)} pages checked: {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())

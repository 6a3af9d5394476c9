"""What a mutant is, and how one source text comes to hold all of them behind switches.

Each mutant is a few insertions around one expression or statement. No insertion holds a line break, so a line of the
rewritten text is the line of the source, and an error of the compiler leads to its mutant.
"""

import dataclasses
import hashlib

LAYERS = ["common", "host", "scene", "submit", "dialog", "plugin"]


@dataclasses.dataclass
class Edit:
    """`before` goes in front of the text from start to end, `after` behind it. With `replaces`, `before` stands for it."""

    start: int
    end: int
    before: str
    after: str = ""
    replaces: bool = False


@dataclasses.dataclass
class Mutant:
    file: str
    line: int
    function: str
    line_text: str
    change: str
    edits: list
    # The namespace-scope variable whose initializer holds it; such a mutant is reached where the variable is used.
    variable: str = ""
    number: int = 0
    key: str = ""

    @property
    def layer(self) -> str:
        return self.file.split("/")[0]

    def describe(self) -> str:
        return f"{self.file}:{self.line}: {self.function}: {self.change}"


def give_keys(mutants: list) -> None:
    """A key holds no line number: it stays the same while the file changes elsewhere."""
    seen = {}
    for mutant in sorted(mutants, key=lambda one: (one.file, one.edits[0].start, one.change)):
        base = "\0".join((mutant.file, mutant.function, " ".join(mutant.line_text.split()), mutant.change))
        seen[base] = seen.get(base, 0) + 1
        mutant.key = hashlib.sha256(f"{base}\0{seen[base]}".encode()).hexdigest()[:16]


def rewrite(text: bytes, edits: list) -> tuple:
    """The text with all edits, and for each edit the part of the result that it makes, [from, to)."""
    replaced = {edit.start: edit for edit in edits if edit.replaces}
    wraps = [(number, edit) for number, edit in enumerate(edits) if not edit.replaces]
    # An outer one opens first and closes last; of two around the same text the one that was listed first is outside.
    opening, closing = {}, {}
    for number, edit in sorted(wraps, key=lambda one: (-one[1].end, one[0])):
        opening.setdefault(edit.start, []).append(edit)
    for number, edit in sorted(wraps, key=lambda one: (-one[1].start, -one[0])):
        closing.setdefault(edit.end, []).append(edit)
    out, begins, spans = bytearray(), {}, {}
    skip_to = 0
    for place in range(len(text) + 1):
        for edit in closing.get(place, []):
            out += edit.after.encode()
            spans[id(edit)] = (begins[id(edit)], len(out))
        for edit in opening.get(place, []):
            begins[id(edit)] = len(out)
            out += edit.before.encode()
        if place in replaced:
            edit = replaced[place]
            spans[id(edit)] = (len(out), len(out) + len(edit.before.encode()))
            out += edit.before.encode()
            skip_to = edit.end
        if place < len(text) and place >= skip_to:
            out.append(text[place])
    return bytes(out), spans

"""Where in the sources a call of the module comes from, by the linker's map beside it."""

import bisect
import pathlib
import re

IMAGE_BASE = re.compile(r"\s*(0x[0-9a-f]+)\s+(?:PROVIDE \()?__ImageBase\b|\s*(0x[0-9a-f]+)\s+__image_base__ = ")
TEXT = re.compile(r" \.text(?:\$\S+)?\s+(0x[0-9a-f]+)\s+(0x[0-9a-f]+)\s+(\S.*)$")
LAYER = re.compile(r"(?:^|[/(])((?:common|host|scene|submit|dialog|plugin)/)?([a-z_0-9]+)\.cpp\.obj")


class Places:
    def __init__(self, module: pathlib.Path, root: pathlib.Path):
        text = pathlib.Path(f"{module}.map").read_text(encoding="utf-8", errors="replace")
        base = next(int(match.group(1) or match.group(2), 16) for match in IMAGE_BASE.finditer(text))
        self.files = {path.stem: f"{layer}/{path.name}" for layer in ("common", "host", "scene", "submit", "dialog", "plugin")
                      for path in (root / layer).rglob("*.cpp")}
        self.starts, self.sources = [], []
        for start, size, source in sorted(self.sections(text)):
            if size > 0 and start >= base:
                self.starts.append(start - base)
                self.sources.append(source)

    def sections(self, text: str):
        """(address, size, file of ours or empty) of the map's code."""
        for line in text.replace("\n                ", " ").splitlines():
            match = TEXT.match(line)
            if match:
                object_file = LAYER.search(match.group(3))
                yield (int(match.group(1), 16), int(match.group(2), 16),
                       self.files.get(object_file.group(2), "") if object_file else "")

    def of(self, stack: str) -> str:
        """The files of ours that the call came through, innermost first, each once in a row."""
        found = []
        for offset in map(int, stack.split()):
            index = bisect.bisect_right(self.starts, offset - 1) - 1
            source = self.sources[index] if index >= 0 else ""
            if source and (not found or found[-1] != source):
                found.append(source)
        return " < ".join(found)

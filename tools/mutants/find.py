"""Finds the places of mutants in the product's sources with libclang, and writes each mutant as edits behind a switch."""

import pathlib
import re

from clang import cindex
from clang.cindex import CursorKind as Kind

from mutants.model import LAYERS, Edit, Mutant

RELATIONS = {"<": ("less", "<=", ">="), "<=": ("at_most", "<", ">"), ">": ("greater", ">=", "<="),
             ">=": ("at_least", ">", "<")}
ARITHMETIC = {"+": ("plus", "-"), "-": ("minus", "+"), "*": ("times", "+"), "/": ("divided", "*"),
              "%": ("modulo", "/"), "<<": ("left", ">>"), ">>": ("right", "<<"), "&": ("bit_and", "|"),
              "|": ("bit_or", "&"), "^": ("bit_xor", "&")}
COMPOUND = {"+=": "-=", "-=": "+=", "*=": "/=", "|=": "&=", "&=": "|=", "<<=": ">>=", ">>=": "<<="}
OPERATOR = re.compile(r"\s*(<<=|>>=|&&|\|\||==|!=|<=|>=|<<|>>|\+=|-=|\*=|/=|\|=|&=|[-+*/%<>&|^=])\s*(?://.*\n\s*)?\Z")
NUMBER = re.compile(r"(0[xX][0-9A-Fa-f]+|[0-9.]+(?:[eE][-+]?[0-9]+)?)([uUlLfF]*)\Z")
NAME = re.compile(r"[A-Za-z_][A-Za-z_0-9]*\Z")
FUNCTIONS = {Kind.FUNCTION_DECL, Kind.CXX_METHOD, Kind.CONSTRUCTOR, Kind.DESTRUCTOR, Kind.CONVERSION_FUNCTION,
             Kind.FUNCTION_TEMPLATE}
TRIVIAL_RETURN = re.compile(r"\{\s*return[^;]*;\s*\}\Z")


class Source:
    """One file of the product while its mutants are collected."""

    def __init__(self, root: pathlib.Path, name: str):
        self.name = name
        self.text = (root / name).read_bytes()
        self.mutants = []
        # Edits that no mutant needs but all of them together: the name of a constant and what takes its constexpr away.
        self.preparations = []
        self.is_read = False
        # variable -> places where a function uses it
        self.uses = {}
        # the place behind a function's opening brace -> variables that it uses as the argument of a macro
        self.uses_in = {}
        # variable -> the variables that its initializer uses
        self.refers = {}
        self.seen = set()

    def piece(self, start: int, end: int) -> str:
        return self.text[start:end].decode("utf-8")

    def line_of(self, offset: int) -> int:
        return self.text.count(b"\n", 0, offset) + 1

    def line_text(self, offset: int) -> str:
        start = self.text.rfind(b"\n", 0, offset) + 1
        end = self.text.find(b"\n", offset)
        return self.text[start:end].decode("utf-8").strip()


class Finder:
    def __init__(self, root: pathlib.Path, text_ids: list):
        self.root = root
        self.text_ids = text_ids
        self.sources = {}
        self.function = ""
        self.variable = ""
        self.body = 0
        # constants of the product: (file, type) -> names in order of declaration
        self.siblings = {}

    def source(self, path: str):
        path = pathlib.Path(path)
        try:
            name = path.resolve().relative_to(self.root).as_posix()
        except ValueError:
            return None
        if name.split("/")[0] not in LAYERS:
            return None
        if name not in self.sources:
            self.sources[name] = Source(self.root, name)
        return self.sources[name]

    def read(self, unit) -> None:
        for cursor in unit.cursor.get_children():
            if cursor.location.file is not None:
                source = self.source(cursor.location.file.name)
                if source is not None and not source.is_read:
                    self.visit(source, cursor)
        for source in self.sources.values():
            source.is_read = True

    # A mutant of the text from start to end.
    def add(self, source, start, end, change, edits):
        place = (start, end, change)
        if place in source.seen or start >= end:
            return
        source.seen.add(place)
        source.mutants.append(Mutant(source.name, source.line_of(start), self.function, source.line_text(start), change,
                                     edits, self.variable))

    def wrap(self, source, cursor, change, before, after):
        start, end = extent(cursor)
        self.add(source, start, end, change, [Edit(start, end, before, after)])

    def visit(self, source, cursor) -> None:
        kind = cursor.kind
        if kind in (Kind.STATIC_ASSERT, Kind.ENUM_DECL):
            if kind == Kind.STATIC_ASSERT:
                start, end = extent(cursor)
                source.preparations.append(("", Edit(start, end, blank(source.piece(start, end)), replaces=True)))
            return
        outer_function, outer_variable, outer_body = self.function, self.variable, self.body
        if kind in FUNCTIONS:
            self.function = cursor.spelling
            self.variable = ""
            bodies = [child for child in cursor.get_children() if child.kind == Kind.COMPOUND_STMT]
            self.body = extent(bodies[0])[0] + 1 if bodies else 0
            self.early_return(source, cursor)
        elif kind in (Kind.CLASS_DECL, Kind.STRUCT_DECL):
            self.function = cursor.spelling
        elif kind == Kind.VAR_DECL:
            self.declaration(source, cursor)
        self.look_at(source, cursor)
        children = list(cursor.get_children())
        if kind == Kind.CASE_STMT:
            children = children[1:]
        for child in children:
            if child.location.file is not None and self.source(child.location.file.name) is source:
                self.visit(source, child)
        self.function, self.variable, self.body = outer_function, outer_variable, outer_body

    def look_at(self, source, cursor):
        kind = cursor.kind
        handlers = {
            Kind.BINARY_OPERATOR: self.operator, Kind.COMPOUND_ASSIGNMENT_OPERATOR: self.compound,
            Kind.CALL_EXPR: self.operator_call, Kind.UNARY_OPERATOR: self.unary,
            Kind.CONDITIONAL_OPERATOR: self.conditional, Kind.IF_STMT: self.branch,
            Kind.COMPOUND_STMT: self.statements, Kind.INTEGER_LITERAL: self.number,
            Kind.FLOATING_LITERAL: self.number, Kind.CHARACTER_LITERAL: self.character,
            Kind.STRING_LITERAL: self.string, Kind.CXX_BOOL_LITERAL_EXPR: self.boolean,
            Kind.DECL_REF_EXPR: self.reference,
        }
        if kind in handlers:
            handlers[kind](source, cursor)

    def declaration(self, source, cursor):
        start, end = extent(cursor)
        at_namespace = cursor.semantic_parent.kind in (Kind.NAMESPACE, Kind.TRANSLATION_UNIT)
        name = cursor.spelling
        if at_namespace:
            self.variable = name
            self.function = name
            source.refers.setdefault(name, set())
            if cursor.type.is_const_qualified() and not cursor.type.get_array_element_type().spelling:
                family = (source.name, cursor.type.spelling)
                names = self.siblings.setdefault(family, [])
                if name not in names:
                    names.append(name)
        text = source.piece(start, end)
        if "constexpr " in text and cursor.semantic_parent.kind not in (
                Kind.CLASS_DECL, Kind.STRUCT_DECL):
            at = start + len(text[:text.index("constexpr ")].encode())
            if ("constexpr", at) not in source.seen:
                source.seen.add(("constexpr", at))
                rest = text[text.index("constexpr ") + 10:]
                storage = "" if "static" in text[:text.index("constexpr ")] else "static "
                constness = "" if rest.startswith("const ") else "const"
                source.preparations.append((name, Edit(at, at + 9, (storage + constness).strip() or " ", replaces=True)))

    def operator(self, source, cursor):
        sides = list(cursor.get_children())
        if len(sides) == 2:
            self.between(source, cursor, sides[0], sides[1], is_class=False)

    def operator_call(self, source, cursor):
        sides = list(cursor.get_children())
        if cursor.spelling.startswith("operator") and len(sides) == 3:
            sides = [side for side in sides if not source.piece(*extent(side)) == cursor.spelling[8:]]
            if len(sides) == 2:
                self.between(source, cursor, sides[0], sides[1], is_class=True)

    def between(self, source, cursor, left, right, is_class):
        left_end, right_start = extent(left)[1], extent(right)[0]
        found = OPERATOR.match(source.piece(left_end, right_start)) if left_end < right_start else None
        start, end = extent(cursor)
        if not found or extent(left)[0] != start or extent(right)[1] != end:
            return
        sign = found.group(1)
        gap = source.piece(left_end, right_start)
        comma = gap.replace(sign, "), (", 1) if "//" not in gap else None
        def call(name, change, more=()):
            at = Edit(left_end, right_start, comma, replaces=True)
            first = self.next_name
            around = Edit(start, end, f"mutant_{name}({first}, (", "))")
            for step, one in enumerate([change, *more]):
                self.add(source, start, end, f"{sign} becomes {one}", [around, at] if step == 0 else [around])
        if sign in ("==", "!="):
            self.wrap(source, cursor, f"{sign} becomes {'!=' if sign == '==' else '=='}", "(mutant(#) != (", "))")
        elif sign in RELATIONS and (is_class or comma is None):
            opposite = {"<": ">=", "<=": ">", ">": "<=", ">=": "<"}[sign]
            self.wrap(source, cursor, f"{sign} becomes {opposite}", "(mutant(#) != (", "))")
        elif sign in RELATIONS:
            name, one, other = RELATIONS[sign]
            call(name, one, [other])
        elif sign in ("&&", "||") and not is_class:
            other = "||" if sign == "&&" else "&&"
            self.add(source, start, end, f"{sign} becomes {other}", [
                Edit(start, end, "(mutant(#) != (", "))"),
                Edit(*extent(left), "(mutant(#) != static_cast<bool>(", "))"),
                Edit(*extent(right), "(mutant(#) != static_cast<bool>(", "))")])
        elif sign in ARITHMETIC and not is_class and comma is not None:
            name, other = ARITHMETIC[sign]
            call(name, other)

    next_name = "#"

    def compound(self, source, cursor):
        sides = list(cursor.get_children())
        if len(sides) != 2:
            return
        left, right = sides
        left_end, right_start = extent(left)[1], extent(right)[0]
        found = OPERATOR.match(source.piece(left_end, right_start)) if left_end < right_start else None
        if found and found.group(1) in COMPOUND:
            other = COMPOUND[found.group(1)]
            target = source.piece(*extent(left))
            start, end = extent(cursor)
            value = source.piece(right_start, end)
            if "\n" not in value:
                self.wrap(source, cursor, f"{found.group(1)} becomes {other}",
                          f"(mutant(#) ? ({target} {other} {value}) : (", "))")

    def unary(self, source, cursor):
        start, end = extent(cursor)
        text = source.piece(start, end)
        inner = list(cursor.get_children())
        if len(inner) != 1:
            return
        if text.startswith("++") or text.startswith("--"):
            up = "true" if text[0] == "+" else "false"
            self.add(source, start, end, f"{text[:2]} becomes {'--' if text[0] == '+' else '++'}", [
                Edit(start, start + 2, "", replaces=True), Edit(start, end, "mutant_step(#, ", f", {up})")])
        elif text.startswith("!") and not text.startswith("!="):
            self.wrap(source, cursor, "! dropped", "(mutant(#) != (", "))")
        elif text.startswith("-") and inner[0].kind not in (Kind.INTEGER_LITERAL, Kind.FLOATING_LITERAL):
            self.wrap(source, cursor, "- dropped", "(mutant(#) ? -(", f") : ({text}))")
        elif text.startswith("~") and "\n" not in text:
            self.wrap(source, cursor, "~ dropped", "(mutant(#) ? ~(", f") : ({text}))")

    def conditional(self, source, cursor):
        parts = list(cursor.get_children())
        if len(parts) == 3 and not negated_elsewhere(parts[0]):
            self.wrap(source, parts[0], "branches swapped", "(mutant(#) != static_cast<bool>(", "))")

    def branch(self, source, cursor):
        parts = list(cursor.get_children())
        if len(parts) < 2 or not parts[0].kind.is_expression():
            return
        condition, then = parts[0], parts[1]
        if not negated_elsewhere(condition):
            self.wrap(source, condition, "branches swapped", "(mutant(#) != static_cast<bool>(", "))")
        body = list(then.get_children())
        last = body[-1].kind if body else None
        if len(parts) == 2 and last in (Kind.RETURN_STMT, Kind.CONTINUE_STMT, Kind.BREAK_STMT):
            self.wrap(source, condition, "early end dropped", "(!mutant(#) && static_cast<bool>(", "))")
            self.wrap(source, condition, "early end always", "(mutant(#) || static_cast<bool>(", "))")

    def statements(self, source, cursor):
        for statement in cursor.get_children():
            start, end = extent(statement)
            if statement.kind in (Kind.BREAK_STMT, Kind.CONTINUE_STMT) or (
                    statement.kind.is_expression() and source.text[end:end + 1] == b";"):
                text = source.piece(start, end)
                if text.startswith("static_cast<void>"):
                    text = text[len("static_cast<void>"):]
                self.add(source, start, end, "statement dropped", [Edit(start, end, "if (!mutant(#)) ")])

    def early_return(self, source, cursor):
        body = [child for child in cursor.get_children() if child.kind == Kind.COMPOUND_STMT]
        if not body or not list(body[0].get_children()):
            return
        start, end = extent(body[0])
        is_void = cursor.kind in (Kind.CONSTRUCTOR, Kind.DESTRUCTOR) or cursor.result_type.spelling == "void"
        if len(list(body[0].get_children())) == 1 and (is_void or TRIVIAL_RETURN.match(source.piece(start, end))):
            return
        value = "" if is_void else " {}"
        self.add(source, start, start + 1, "returns at once", [
            Edit(start, start + 1, "{ if (mutant(#)) return" + value + ";", replaces=True)])

    def number(self, source, cursor):
        start, end = extent(cursor)
        text = source.piece(start, end)
        if text in ("TRUE", "FALSE"):
            other = "FALSE" if text == "TRUE" else "TRUE"
            self.wrap(source, cursor, f"{text} becomes {other}", f"(mutant(#) ? {other} : ", ")")
        elif text.startswith("IDS_"):
            other = self.text_ids[(self.text_ids.index(text) + 1) % len(self.text_ids)]
            self.wrap(source, cursor, f"{text} becomes {other}", f"(mutant(#) ? {other} : ", ")")
        elif text == "INFINITE":
            self.wrap(source, cursor, "INFINITE becomes 5000", "(mutant(#) ? 5000 : ", ")")
        elif NAME.match(text):
            self.wrap(source, cursor, f"{text} becomes {text} + 1", f"(mutant(#) ? {text} + 1 : ", ")")
            self.wrap(source, cursor, f"{text} becomes 0", "(mutant(#) ? 0 : ", ")")
        else:
            found = NUMBER.match(text)
            if found:
                digits, suffix = found.groups()
                is_float = cursor.kind == Kind.FLOATING_LITERAL
                value = float(digits) if is_float else int(digits, 16 if digits[:2].lower() == "0x" else 10)
                for other in ([value + 1] if value == 0 or is_float else [value + 1, value - 1]):
                    self.wrap(source, cursor, f"{text} becomes {other}{suffix}",
                              f"(mutant(#) ? {other}{suffix} : ", ")")

    def character(self, source, cursor):
        text = source.piece(*extent(cursor))
        found = re.match(r"(u8|L|u|U)?'(.+)'\Z", text)
        if found:
            prefix = found.group(1) or ""
            other = f"{prefix}'x'" if found.group(2) != "x" else f"{prefix}'y'"
            self.wrap(source, cursor, f"{text} becomes {other}", f"(mutant(#) ? {other} : ", ")")

    def string(self, source, cursor):
        text = source.piece(*extent(cursor))
        if not re.match(r'(u8|L|u|U)?"', text) or 'R"' in text:
            return
        other = changed_string(text)
        shown = text if len(text) < 60 else text[:57] + "..."
        self.wrap(source, cursor, f"{' '.join(shown.split())} changed", f"(mutant(#) ? {other} : ", ")")

    def boolean(self, source, cursor):
        text = source.piece(*extent(cursor))
        if text in ("true", "false"):
            other = "false" if text == "true" else "true"
            self.wrap(source, cursor, f"{text} becomes {other}", f"(mutant(#) ? {other} : ", ")")

    def reference(self, source, cursor):
        target = cursor.referenced
        start, end = extent(cursor)
        text = source.piece(start, end)
        name = re.split(r"::", text)[-1]
        if target is None or target.location.file is None:
            return
        home = self.source(target.location.file.name)
        if home is None:
            return
        if name != target.spelling:
            if target.kind == Kind.VAR_DECL and self.body:
                source.uses_in.setdefault(self.body, set()).add(target.spelling)
            return
        if target.kind == Kind.ENUM_CONSTANT_DECL:
            names = [one.spelling for one in target.semantic_parent.get_children()]
        elif target.kind == Kind.VAR_DECL and target.semantic_parent.kind in (Kind.NAMESPACE, Kind.TRANSLATION_UNIT):
            names = self.siblings.get((home.name, target.type.spelling), [])
            if self.variable:
                source.refers.setdefault(self.variable, set()).add(name)
            else:
                source.uses.setdefault((start, end), name)
        else:
            return
        if name in names and len(names) > 1:
            other = names[(names.index(name) + 1) % len(names)]
            whole = text[:len(text) - len(name)] + other
            self.wrap(source, cursor, f"{text} becomes {whole}", f"(mutant(#) ? {whole} : ", ")")


def extent(cursor) -> tuple:
    return cursor.extent.start.offset, cursor.extent.end.offset


def blank(text: str) -> str:
    return "".join("\n" if one == "\n" else " " for one in text)


def negated_elsewhere(cursor) -> bool:
    """A comparison or a negation has a mutant of its own that gives the opposite."""
    while cursor.kind in (Kind.UNEXPOSED_EXPR, Kind.PAREN_EXPR):
        inner = list(cursor.get_children())
        if len(inner) != 1:
            break
        cursor = inner[0]
    tokens = [token.spelling for token in cursor.get_tokens()]
    if cursor.kind == Kind.UNARY_OPERATOR:
        return tokens[:1] == ["!"]
    if cursor.kind == Kind.CALL_EXPR:
        return cursor.spelling in ("operator==", "operator!=", "operator<", "operator>")
    return cursor.kind == Kind.BINARY_OPERATOR and not any(token in ("&&", "||") for token in tokens)


def changed_string(text: str) -> str:
    """The literal with one plain character in its middle changed; an empty one gets a character."""
    text = " ".join(text.split("\n"))
    inside = [match.start() for match in re.finditer(r'(?<![\\%A-Za-z0-9])[A-Za-z0-9.,:/ ]|[A-Za-z0-9.,:/ ]', text)]
    first = text.index('"')
    usable = [place for place in inside if place > first and text[place - 1] not in "\\%" and text[place] != " "
              and not in_prefix(text, place)]
    if not usable:
        return text[:first + 1] + "x" + text[first + 1:]
    place = usable[len(usable) // 2]
    other = {"z": "y", "Z": "Y", "9": "8", "/": "|", ":": ";", ".": ",", ",": "."}.get(text[place])
    return text[:place] + (other or chr(ord(text[place]) + 1)) + text[place + 1:]


def in_prefix(text: str, place: int) -> bool:
    """Whether the place is outside of the quotes, between two parts of one literal."""
    return len(re.findall(r'(?<!\\)"', text[:place])) % 2 == 0

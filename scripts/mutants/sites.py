"""Finds the places of a source text that can be mutated."""

import re
from dataclasses import dataclass

SWAPS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&"}

# What surrounds them tells operators from template brackets and references: the sources are formatted.
COMPARISON = re.compile(r"(?<=\s)(<=|>=|==|!=|<|>|&&|\|\|)(?=\s)")
NUMBER = re.compile(r"(?<![\w.'])(0[xX][0-9a-fA-F']+|\d[\d']*)([uUlL]*)(?![\w.'])")
SIZE = re.compile(r"\b(?:\w+(?:\.|->))*(?:size|length|\w*Size|\w*Length|\w*Count)\(\)(?! *(?:[{=]|const|override))")
NO_CODE = re.compile(r"""//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|(?<!\w)'(?:\\.|[^'\\\n])*'|^\#[^\n]*""",
                     re.DOTALL | re.MULTILINE)
GUARD = re.compile(r"\bif \(")
LEAVES = re.compile(r"\s*\{\s*(?:throw|return|break|continue)\b")
CHECK = re.compile(r"^ +(?:\w+(?:\.|->|::))*(?:require|demand|needs|check|ensure)\w*\(", re.MULTILINE)


@dataclass(frozen=True)
class Mutant:
    """A source text with the characters from begin to end replaced."""

    path: str
    line: int
    kind: str
    begin: int
    end: int
    replacement: str

    def apply(self, text):
        return text[: self.begin] + self.replacement + text[self.end :]

    def changed_lines(self, text):
        """The lines that it changes, as they are and as it has them, without their indentation."""
        first = text.rfind("\n", 0, self.begin) + 1
        last = text.find("\n", self.end)
        old = text[first:last]
        new = text[first : self.begin] + self.replacement + text[self.end : last]
        return tuple(" ".join(piece.split()) for piece in (old, new))


def blanked(text):
    """The text with comments, strings, characters and preprocessor lines blanked out, in the same places."""
    return NO_CODE.sub(lambda match: re.sub(r"[^\n]", " ", match.group()), text)


def closing(text, opening):
    """Where the bracket that opens at the given place closes."""
    depth = 0
    for place in range(opening, len(text)):
        depth += {"(": 1, ")": -1}.get(text[place], 0)
        if depth == 0:
            return place
    raise ValueError("an open bracket")


def comparisons(code):
    for match in COMPARISON.finditer(code):
        yield match.start(), match.end(), SWAPS[match.group()]


def off_by_one(code):
    for match in NUMBER.finditer(code):
        digits, suffix = match.groups()
        is_octal = digits[0] == "0" and digits.isdigit()
        value = int(digits.replace("'", ""), 8 if is_octal else 0)
        for other in (value + 1, value - 1):
            if other >= 0:
                yield match.start(), match.end(), str(other) + suffix
    for match in SIZE.finditer(code):
        for change in ("+", "-"):
            yield match.start(), match.end(), f"({match.group()} {change} 1)"


def dropped_checks(code):
    for match in GUARD.finditer(code):
        end = closing(code, match.end() - 1)
        if LEAVES.match(code, end + 1):
            after_declaration = code.rfind(";", match.end(), end) + 1
            yield after_declaration or match.end(), end, (" " if after_declaration else "") + "false && ({})"
    for match in CHECK.finditer(code):
        end = closing(code, match.end() - 1)
        if code.startswith(";", end + 1):
            yield match.start(), end + 1, " "


KINDS = {"comparison": comparisons, "off by one": off_by_one, "dropped check": dropped_checks}


def mutants_of(path, text):
    code = blanked(text)
    for kind, find in KINDS.items():
        for begin, end, replacement in find(code):
            line = text.count("\n", 0, begin) + 1
            yield Mutant(path, line, kind, begin, end, replacement.replace("{}", text[begin:end].strip()))

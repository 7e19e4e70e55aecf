"""Reads include/lumalane.h: its chapters, their text, and the block of every function."""

import re
from dataclasses import dataclass, field


@dataclass
class Item:
    """A line of a function's block: "- key: text"."""

    key: str
    text: str


@dataclass
class Function:
    name: str
    signature: str
    summary: str
    example: str  # an indented piece below the summary
    items: list
    chapter: str = ""

    def texts(self, key):
        return [i.text for i in self.items if i.key == key or i.key.startswith(key + ",")]


@dataclass
class Chapter:
    """What stands below a heading: comments, as lists of lines, and functions, in their order."""

    title: str
    group: str
    parts: list = field(default_factory=list)

    def functions(self):
        return [p for p in self.parts if isinstance(p, Function)]


def _declaration(lines, at):
    text = []
    while True:
        text.append(lines[at].strip())
        at += 1
        if text[-1].endswith(";"):
            return " ".join(text), at


def _function(block, declaration):
    name = re.match(r"LUMALANE_API void LUMALANE_CALL (\w+)\(", declaration).group(1)
    arguments = declaration[declaration.index("(") + 1 : declaration.rindex(")")].split(", ")
    head = f"void {name}("
    lines, line = [], head
    for i, argument in enumerate(arguments):
        piece = argument + (");" if i == len(arguments) - 1 else ",")
        if line != head and len(line) + 1 + len(piece) > 84:
            lines.append(line)
            line = " " * len(head) + piece if len(head) < 30 else "        " + piece
        else:
            line += piece if line == head else " " + piece
    lines.append(line)

    summary, example, items = [], [], []
    for raw in block:
        if raw.startswith("- "):
            key, _, text = raw[2:].partition(": ")
            if key.startswith(("reads info", "reads frame", "record", "step", "rows", "quirk",
                               "precondition")) or key in ("reads", "writes"):
                items.append(Item(key, text))
            else:  # "reads, C = up(width >> 1, 8): src: ..." and the like
                word, _, rest = raw[2:].partition(",")
                given, _, text = rest.strip().partition(": ")
                items.append(Item(word + ", " + given, text))
        elif items and raw.startswith("  "):
            items[-1].text += " " + raw.strip()
        elif items and raw:
            raise ValueError(f"{name}: cannot read {raw!r}")
        elif raw.startswith("    "):
            example.append(raw[4:])
        elif raw:
            summary.append(raw)
        elif summary and not items:
            summary.append("")
    text = "\n".join(summary).strip()
    return Function(name, "\n".join(lines), text, "\n".join(example), items)


def read(path):
    """The comment before the include guard as lines, the chapters, and the records' text."""
    lines = path.read_text().splitlines()
    guard = lines.index("#ifndef LUMALANE_H")
    intro = [re.sub(r"^// ?", "", line) for line in lines[:guard]]

    records = {}
    for match in re.finditer(r"((?:^///.*\n)+)^struct (\w+) \{\n(?:.*\n)*?^\};$", path.read_text(),
                             re.M):
        records[match.group(2)] = match.group(0)

    chapters, group, comment = [], "", []
    at = guard
    while at < len(lines):
        line = lines[at]
        heading = re.match(r"// ---- (.*?)( -+)?$", line)
        if heading:
            if heading.group(2):
                group = heading.group(1)
            chapters.append(Chapter(heading.group(1), group))
            at += 1
        elif line.startswith("///") and chapters:
            block = []
            while lines[at].startswith("///"):
                block.append(re.sub(r"^/// ?", "", lines[at]))
                at += 1
            declaration, at = _declaration(lines, at)
            function = _function(block, declaration)
            function.chapter = chapters[-1].title
            chapters[-1].parts.append(function)
        elif line.startswith("//") and chapters:
            comment = []
            while at < len(lines) and lines[at].startswith("//") and not lines[at].startswith(
                    ("///", "// ----")):
                comment.append(re.sub(r"^// ?", "", lines[at]))
                at += 1
            chapters[-1].parts.append(comment)
        else:
            at += 1
    return intro, chapters, records

"""Makes the reference sections of the manual from include/lumalane.h, when mkdocs builds it.

In a page stand, each on a line of its own:

    <!-- chapter: TITLE -->       a chapter of the header, with a section for each of its functions
    <!-- conventions -->          the comment that the header begins with, and
    <!-- conventions: TITLE -->   a piece of it
    <!-- records -->              the records
    <!-- functions -->            a table of all functions
    <!-- figures: SECTION -->     a table of a section of docs/figures.yml

and anywhere in its text {{name}}, a link to the section of a function, and {{figure:NAME}}, what the tests
of all builds told under that name, added up. Pictures, grids of bytes and
sizes come from what docs/pictures made (extra.pictures in mkdocs.yml).
"""

import html
import json
import pathlib
import re
import sys

import yaml
from mkdocs.exceptions import PluginError
from mkdocs.structure.files import File
from mkdocs.utils import get_relative_url

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import header  # noqa: E402

ROOT = pathlib.Path(__file__).parents[2]
SECTION = "What a section tells"  # the header's first words about itself have no title
INTRO = [SECTION, "Conventions", "Steps and drift", "Which bytes", "Pixel formats",
         "Planes of YV12 surfaces", "Colour", "Adjustment"]


class Manual:
    """What the pages are made of; read anew for each build."""

    def __init__(self, pictures):
        self.pictures = pathlib.Path(pictures)
        self.intro, self.chapters, self.records = header.read(ROOT / "include/lumalane.h")
        self.functions = {f.name: f for c in self.chapters for f in c.functions()}
        exports = re.findall(r"^LUMALANE_EXPORT\(\w+, (\w+)\)",
                             (ROOT / "abi/exports.inc").read_text(), re.M)
        if list(self.functions) != exports:
            raise PluginError("lumalane.h and abi/exports.inc do not have the same functions")
        self.companion = yaml.safe_load((ROOT / "docs/companion.yml").read_text())
        facts = self.pictures / "facts.json"
        if not facts.exists():
            raise PluginError(f"{facts} is missing: scripts/manual makes it")
        self.facts = json.loads(facts.read_text())
        for name in self.functions:
            if name not in self.facts or name not in self.companion:
                raise PluginError(f"{name} has no pictures, or no line in docs/companion.yml")
        self.pages = {}  # of chapters, by title
        self.speed = measured((ROOT / "docs/speed.md").read_text())


ROW = re.compile(r"^(\|\s*)`(\w+)(/[^`]*)?`(.*)$", re.M)  # of a table about speed


def measured(text):
    """What the page about speed has in its tables, below headings that are sizes: per function,
    per thing in the buffers, a list of (size, nanoseconds per pixel of the first column). The first
    table of a size counts: later ones are of several threads."""
    found, size = {}, ""
    for line in text.splitlines():
        row = ROW.match(line)
        if line.startswith("#"):
            heading = re.match(r"#+\s+(\d+x\d+)\s*$", line)
            size = heading.group(1) if heading else ""
        elif row:
            value = re.match(r"\s*\|\s*([\d.]+)", row.group(4))
            kinds = found.setdefault(row.group(2), {})
            values = kinds.setdefault((row.group(3) or "/")[1:], [])
            if value and size and size not in (s for s, _ in values):
                values.append((size, value.group(1)))
    return found


manual = None


# ---- Text of the header ---------------------------------------------------------------------------

TESTS = re.compile(r"\s*\[((?:[a-z0-9_]+\.[a-z0-9_]+(?:,\s*)?)+)\]")


def link_to(name, page):
    chapter = manual.functions[name].chapter
    url = get_relative_url(manual.pages[chapter], page.url)
    return f'<a href="{url}#{name}"><code>{name}</code></a>'


PLANES = re.compile(r"(the table of\s+planes|Planes of YV12 surfaces)")


def inline(text, page, own=""):
    """A sentence of the header as HTML: names of functions become links, tests stand apart."""
    text = html.escape(text, quote=False)
    text = re.sub(r"`([^`]*)`", r"<code>\1</code>", text)

    def name(match):
        found = match.group(1)
        return link_to(found, page) if found in manual.functions and found != own else found

    text = re.sub(r"(?<![\w.>])(\w{8,})(?:\(\))?(?![\w.])", name, text)
    planes = get_relative_url("reference/conventions.html", page.url) + "#planes-of-yv12-surfaces"
    text = PLANES.sub(rf'<a href="{planes}">\1</a>', text)
    text = TESTS.sub(lambda m: "".join(
        f'<span class="test" title="the test that shows it">{t.strip()}</span>'
        for t in m.group(1).split(",")), text)
    return text


def blocks(lines):
    found, block = [], []
    for line in lines + [""]:
        if line.strip():
            block.append(line)
        elif block:
            found.append(block)
            block = []
    return found


def terms(block):
    """A block of lines "term   what it is", or nothing if it is none."""
    least = min(len(line) - len(line.lstrip()) for line in block)
    entries = []
    for line in block:
        line = line[least:]
        parts = re.split(r" {2,}", line)
        if not line.startswith(" ") and len(parts) == 2 and not re.search(r"[=|:]", parts[0]):
            entries.append(parts)
        elif line.startswith("    ") and entries and len(re.split(r" {2,}", line.strip())) == 1:
            entries[-1][1] += " " + line.strip()
        else:
            return []
    is_drawing = any("==" in text for _, text in entries)
    return entries if len(entries) > 1 and not is_drawing else []


def prose(lines, page):
    """Paragraphs, lists and drawings of the header as HTML."""
    out, quirks = [], []

    def flush():
        if quirks:
            out.append('<ul class="quirks">' + "".join(f"<li>{q}</li>" for q in quirks) + "</ul>")
            quirks.clear()

    for block in blocks(lines):
        if re.match(r"(quirk|record): ", block[0]):
            entries = []
            for line in block:
                if re.match(r"(quirk|record): ", line):
                    entries.append(line)
                else:
                    entries[-1] += " " + line.strip()
            for entry in entries:
                kind, _, text = entry.partition(": ")
                quirks.append(f'<b class="{kind}">{kind}</b> {inline(text, page)}')
            continue
        flush()
        if terms(block):
            out.append("<table class=\"terms\">" + "".join(
                f"<tr><th><code>{html.escape(t, quote=False)}</code></th>"
                f"<td>{inline(text, page)}</td></tr>" for t, text in terms(block)) + "</table>")
        elif block[0].startswith("- "):
            entries = []
            for line in block:
                if line.startswith("- "):
                    entries.append(line[2:])
                else:
                    entries[-1] += " " + line.strip()
            out.append("<ul>" + "".join(f"<li>{inline(e, page)}</li>" for e in entries) + "</ul>")
        elif block[0].startswith("  "):
            least = min(len(line) - len(line.lstrip()) for line in block)
            text = html.escape("\n".join(line[least:] for line in block), quote=False)
            if out and out[-1].endswith("</code></pre>"):
                out[-1] = out[-1][:-len("</code></pre>")] + f"\n\n{text}</code></pre>"
            else:
                out.append(f'<pre class="plain"><code>{text}</code></pre>')
        else:
            # A paragraph may end in indented lines.
            while block:
                plain = []
                while block and not block[0].startswith("  "):
                    plain.append(block.pop(0))
                if plain:
                    out.append(f"<p>{inline(' '.join(plain), page)}</p>")
                deep = []
                while block and block[0].startswith("  "):
                    deep.append(block.pop(0))
                if deep:
                    out.append(prose([line for line in deep] + [""], page))
    flush()
    return "\n".join(out).replace("\n\n", "\n&nbsp;\n")


def intro_piece(title):
    lines = manual.intro
    starts = {}
    for i, line in enumerate(lines):
        for known in INTRO:
            if known not in starts and (
                    line == known or line.startswith((known + ":", known + " ("))
                    or (known == SECTION and line.startswith("This header is the reference"))):
                starts[known] = i
    if title not in starts:
        raise PluginError(f"lumalane.h has no piece '{title}'")
    begin = starts[title]
    end = min([s for s in starts.values() if s > begin] + [len(lines)])
    piece = lines[begin:end]
    if title == SECTION:
        return piece
    if piece[0] == title:
        return [re.sub("^  ", "", line) for line in piece[1:]]
    first = piece[0][len(title):].lstrip(": ")
    return [first[0].upper() + first[1:]] + piece[1:]


# ---- Sections -------------------------------------------------------------------------------------

def figure(picture, page):
    base = get_relative_url("pictures/", page.url)
    w, h = picture["width"], picture["height"]
    caption = html.escape(picture["caption"], quote=False)
    return (f'<figure style="flex-basis:{w}px"><img src="{base}{picture["file"]}" width="{w}" height="{h}" '
            f'alt="{html.escape(picture["caption"])}" loading="lazy">'
            f"<figcaption>{caption}</figcaption></figure>")


def grids(facts, name):
    out = []
    for i, grid in enumerate(facts["grids"]):
        svg = (manual.pictures / grid["file"]).read_text().strip()
        title = html.escape(grid["title"], quote=False)
        out.append(f'<figure class="grid"><figcaption>{title}</figcaption>{svg}</figure>')
    return out


def formula(text, page, name, above):
    """Bytes of each buffer on a line of its own."""
    pieces = re.split(r"; (?=[a-z_]+(?:, [a-z_]+)*:? )", text)
    lines = "".join(f'<div class="formula">{inline(p, page, name)}</div>' for p in pieces)
    return lines.replace("as above", f'<a href="#{above}">as above</a>')


def section(f, page, level, above):
    """`above`: the anchor of the text that "as above" means."""
    facts = manual.facts[f.name]
    lines = [f"{level} {f.name} {{: #{f.name} .function }}", ""]
    paragraphs = [" ".join(p) for p in blocks(f.summary.split("\n"))]
    lines += ["".join(f"<p>{inline(p, page, f.name)}</p>" for p in paragraphs), ""]
    if f.example:
        lines += [f'<pre class="plain"><code>{html.escape(f.example)}</code></pre>', ""]
    lines += ["```cpp", f.signature, "```", ""]
    lines += ['<div class="pictures">' + "".join(figure(p, page) for p in facts["pictures"])
              + "</div>", ""]

    rows = []

    def row(head, text):
        rows.append(f"<tr><th>{head}</th><td>{text}</td></tr>")

    labels = {"step": "Step", "rows": "Rows", "reads info": "Reads <code>info</code>",
              "reads frame": "Reads <code>frame</code>", "reads": "Reads", "writes": "Writes",
              "record": "Record after", "precondition": "Precondition"}
    for item in f.items:
        key, _, given = item.key.partition(", ")
        if key == "quirk":
            continue
        text = formula(item.text, page, f.name, above) if key in ("reads", "writes") else inline(
            item.text, page, f.name)
        if given:
            text = f'<div class="formula">{inline(given, page, f.name)}:</div>' + text
        row(labels[key], text)
    row("Least sizes", html.escape(facts["least"]))
    if "slices" in facts:
        row("In slices", "the same bytes" if facts["slices"] else "other bytes")
    row("Instead", inline(manual.companion[f.name], page, f.name))
    row("Speed", speed(f.name, page))
    lines += ['<table class="facts">' + "".join(rows) + "</table>", ""]

    quirks = [i.text for i in f.items if i.key == "quirk"]
    if quirks:
        lines += ['<ul class="quirks">' + "".join(
            f'<li><b class="quirk">quirk</b> {inline(q, page, f.name)}</li>' for q in quirks)
            + "</ul>", ""]

    drawn = grids(facts, f.name)
    if drawn:
        lines += [f'<p class="call">Bytes of <code>{html.escape(facts["call"])}</code>:</p>', "",
                  LEGEND, "", drawn[0], ""]
        if len(drawn) > 1:
            lines += [f'<details class="fold"><summary>What it reads, and its other planes</summary>'
                      f'{"".join(drawn[1:])}</details>', ""]
    if facts["examples"]:
        lines += [sizes(facts["examples"]), ""]
    return lines


def speed(name, page):
    url = get_relative_url("speed.html", page.url)
    if name not in manual.speed:
        return f'<a href="{url}">how fast, and how that is measured</a>'
    lines = []
    for kind, values in manual.speed[name].items():
        text = ", ".join(f"{value} at {size}" for size, value in values)
        if text:
            lines.append((f"{html.escape(kind)}: " if kind else "") + text)
    if lines:
        lines[0] = "ns per pixel: " + lines[0]
    lines.append(f'<a href="{url}#speed-{name}">measured beside others</a>')
    return "<br>".join(lines)


LEGEND = ('<div class="legend"><span><i class="k-in"></i>in the picture</span>'
          '<span><i class="k-over"></i>beyond it (overrun, drift)</span>'
          '<span><i class="k-gap"></i>of the picture, left out</span>'
          '<span><i class="k-not"></i>not touched</span>'
          '<span><i class="k-start"></i>a row begins</span></div>')


def sizes(examples):
    """Bytes that buffers must have, from footprint_of()."""
    names = [p["pointer"] for p in examples[0]["bytes"]]
    head = "".join(f"<th><code>{n}</code></th>" for n in names)
    body = ""
    for e in examples:
        body += f"<tr><td>{html.escape(e['call'])}</td>" + "".join(
            f"<td>{html.escape(b['range'])}</td>" for b in e["bytes"]) + "</tr>"
    return ('<details class="fold"><summary>Bytes [first, end) that the buffers must have</summary>'
            f'<div class="wide"><table class="sizes"><tr><th>Call</th>{head}</tr>{body}</table>'
            '</div></details>')


def chapter(title, page):
    found = [c for c in manual.chapters if c.title == title]
    if not found:
        raise PluginError(f"lumalane.h has no chapter '{title}'")
    this = found[0]
    shared = [c for c in manual.chapters if c.title == this.group and not c.functions()]
    lines, first, above = [], True, "family"
    if shared and shared[0] is not this:
        lines += [f"## {shared[0].title} {{: #shared }}", ""]
        lines += [prose(p, page) for p in shared[0].parts] + [""]
    heading = "## " + (title if title != page.title else "What they share")
    for part in this.parts:
        if isinstance(part, list):
            text = part
            if first:
                lines += [heading + " {: #family }", ""]
            else:
                sub, _, rest = " ".join(part[:1]).partition(":")
                anchor = f"family-{len(lines)}"
                # Without formulas of its own it has those of the family.
                above = "family" if "as above" in " ".join(part) else anchor
                lines += [f"## {sub} {{: #{anchor} }}", ""]
                text = ([rest.strip()[0].upper() + rest.strip()[1:]] if rest.strip() else []) + \
                    part[1:]
            lines += [prose(text, page), ""]
        else:
            if first:
                lines += ["## Functions", ""]
            lines += section(part, page, "###", above)
        first = False
    return lines


def table(page):
    rows = []
    for c in manual.chapters:
        for i, f in enumerate(c.functions()):
            first = (f'<th rowspan="{len(c.functions())}">'
                     f'<a href="{get_relative_url(manual.pages[c.title], page.url)}">'
                     f"{html.escape(c.title)}</a></th>") if i == 0 else ""
            summary = re.split(r"(?<=[.:])\s", f.summary.replace("\n", " "))[0].rstrip(":.")
            rows.append(f"<tr>{first}<td>{link_to(f.name, page)}</td>"
                        f"<td>{inline(summary, page, f.name)}</td></tr>")
    return ['<div class="wide"><table class="functions"><tr><th>Family</th><th>Function</th>'
            "<th>What it does</th></tr>" + "".join(rows) + "</table></div>"]


def drawing(name):
    return (manual.pictures / f"{name}.svg").read_text().strip()


def decorated():
    """The names under which the DLLs export the functions."""
    lists = [(ROOT / f"tests/exports/windows-{bits}.txt").read_text().split() for bits in (32, 64)]
    rows = []
    for name in manual.functions:
        found = [n for names in lists for n in names if n.startswith(f"?{name}@@")]
        if len(found) != 2:
            raise PluginError(f"{name} has no decorated names in tests/exports")
        rows.append("<tr><td>" + "<br>".join(f"<code>{html.escape(n)}</code>" for n in found)
                    + "</td></tr>")
    return ['<details class="fold"><summary>All 68, of the 32-bit DLL and of the 64-bit ones</summary>'
            f'<div class="wide"><table class="names">{"".join(rows)}</table></div></details>']


def slices(page):
    """Which functions give the same bytes in slices: docs/pictures has tried it."""
    rows = ""
    for c in manual.chapters:
        lists = [[f.name for f in c.functions() if manual.facts[f.name].get("slices") is same]
                 for same in (True, False)]
        if any(lists):
            rows += (f'<tr><td><a href="{get_relative_url(manual.pages[c.title], page.url)}">'
                     f"{html.escape(c.title)}</a></td>" + "".join(
                         "<td>" + ("<br>".join(link_to(n, page) for n in names) or "-") + "</td>"
                         for names in lists) + "</tr>")
    return ['<div class="wide"><table class="functions"><tr><th>Family</th>'
            f"<th>The same bytes</th><th>Other bytes</th></tr>{rows}</table></div>"]


# ---- What the tests told --------------------------------------------------------------------------

def figures():
    return yaml.safe_load((ROOT / "docs/figures.yml").read_text())


def total(told, name):
    found = [build[name] for build in told["builds"].values() if name in build]
    if not found:
        raise PluginError(f"docs/figures.yml has no figure {name}")
    return sum(found)


def figure_cell(key, value):
    text = f"{value:,}" if isinstance(value, int) else html.escape(value)
    return f'<span data-figure="{html.escape(key)}">{text}</span>'


TABLES_OF_FIGURES = {"builds": "Figure", "processors": "Processor", "fuzz": "Target", "coverage": "Directory",
                     "bad_input": "Tried"}


def figures_table(section):
    cells = {}  # by row and column
    for name, told in (figures()[section] or {}).items():
        for figure, value in told.items() if isinstance(told, dict) else [("", told)]:
            key = figure_cell("/".join(filter(None, (section, name, figure))), value)
            cells[(figure, name) if section == "builds" else (name, figure or "takes")] = key
    columns = list(dict.fromkeys(column for _, column in cells))
    head = "".join(f"<th>{html.escape(c)}</th>" for c in (TABLES_OF_FIGURES[section], *columns))
    rows = "".join(f"<tr><td>{html.escape(row)}</td>"
                   + "".join(f"<td>{cells.get((row, c), '')}</td>" for c in columns) + "</tr>"
                   for row in sorted({row for row, _ in cells}))
    return [f'<div class="wide told"><table><tr>{head}</tr>{rows}</table></div>']


# ---- mkdocs ---------------------------------------------------------------------------------------

def on_files(files, config):
    global manual
    manual = Manual(config["extra"]["pictures"])
    for file in list(files):
        # Programs and samples are no part of the site.
        if re.match(r"(pictures|samples|hooks)/|(companion|figures)\.yml$", file.src_path):
            files.remove(file)
        elif file.src_path.endswith(".md"):
            text = pathlib.Path(file.abs_src_path).read_text()
            for title in re.findall(r"<!-- chapter: (.*?) -->", text):
                manual.pages[title] = file.url
    for made in sorted(manual.pictures.glob("*.png")) + sorted(manual.pictures.glob("*.plot.svg")):
        file = File(f"pictures/{made.name}", str(manual.pictures), config["site_dir"],
                    config["use_directory_urls"])
        file.abs_src_path = str(made.resolve())
        files.append(file)
    lost = [c.title for c in manual.chapters if c.functions() and c.title not in manual.pages]
    if lost:
        raise PluginError(f"no page has the chapters {lost}")
    return files


def on_page_markdown(markdown, page, config, files):
    if page.file.src_path == "speed.md":
        seen = set()

        def anchor(match):
            before, name, kind, rest = match.groups()
            if name not in manual.functions:
                return match.group(0)
            mark = "" if name in seen else f'<span id="speed-{name}"></span>'
            seen.add(name)
            return f"{before}{mark}{link_to(name, page)} {(kind or '/')[1:]}{rest}"

        markdown = ROW.sub(anchor, markdown)

    def made(match):
        what, _, title = match.group(1).partition(": ")
        if what == "chapter":
            lines = chapter(title, page)
        elif what == "functions":
            lines = table(page)
        elif what == "records":
            lines = []
            for name, text in manual.records.items():
                lines += [f"## {name}", "", "```cpp", text, "```", ""]
        elif what == "conventions" and title:
            lines = [prose(intro_piece(title), page)]
        elif what == "conventions":
            lines = []
            for piece in INTRO:
                lines += [f"## {piece}", "", prose(intro_piece(piece), page), ""]
        elif what == "bytes":
            facts = manual.facts[title]
            lines = [f'<p class="call">Bytes of <code>{html.escape(facts["call"])}</code>:</p>', "",
                     LEGEND, "", grids(facts, title)[0]]
        elif what == "pictures":
            lines = ['<div class="pictures">' + "".join(
                figure(p, page) for p in manual.facts[title]["pictures"]) + "</div>"]
        elif what == "errors":
            text = (ROOT / "include/lumalane/errors.h").read_text()
            lines = ["```cpp", re.search(r"^enum class error \{.*?^\};", text, re.M | re.S).group(0),
                     "```"]
        elif what == "slices":
            lines = slices(page)
        elif what == "figures":
            lines = figures_table(title)
        elif what == "decorated names":
            lines = decorated()
        elif what == "svg":
            lines = [f'<div class="grid">{drawing(title)}</div>']
        elif what == "plot":
            name = f"{title}.plot.svg"
            svg = (manual.pictures / name).read_text()
            lines = ['<div class="plot">' + svg[svg.index("<svg"):].replace("\n\n", "\n") + "</div>"]
        else:
            return match.group(0)
        return "\n".join(lines)

    markdown = re.sub(r"^<!-- (.*?) -->$", made, markdown, flags=re.M)
    markdown = re.sub(r"<!-- svg-inline: (.*?) -->", lambda m: drawing(m.group(1)), markdown)

    def name(match):
        if match.group(1) not in manual.functions:
            raise PluginError(f"{page.file.src_path}: there is no function {match.group(1)}")
        return link_to(match.group(1), page)

    markdown = re.sub(r"\{\{figure:([\w-]+)\}\}",
                      lambda m: figure_cell(m.group(1), total(figures(), m.group(1))), markdown)
    return re.sub(r"\{\{(\w+)\}\}", name, markdown)

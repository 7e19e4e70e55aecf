"""check_site.py SITE: tests the built manual. Prints what is wrong, and fails if anything is.

  - Each function of abi/exports.inc has its section, with pictures, a drawing of bytes, the facts.
  - Each of them is in the index for searching.
  - Each link leads to a page, a file and an anchor of the site.
  - Nothing is loaded from elsewhere: scripts, style sheets, fonts, pictures.
  - Each test that the header names beside a quirk exists.
  - Each figure that a page shows is that of docs/figures.yml, and each of that file is shown.
"""

import json
import pathlib
import re
import sys
from html.parser import HTMLParser
from urllib.parse import unquote, urlsplit

import yaml

ROOT = pathlib.Path(__file__).parents[2]
FACTS = ["Step", "Rows", "Reads", "Writes", "Least sizes", "Instead", "Speed"]
# What these have not: it sets numbers, it is no picture function.
WITHOUT = {"get_contrast_data": {"Step", "Rows"}}
LOADS = {"script": "src", "img": "src", "iframe": "src", "source": "src", "video": "src",
         "audio": "src", "embed": "src", "object": "data", "use": "href", "image": "href",
         "input": "src", "track": "src"}


class Page(HTMLParser):
    """Anchors, links and what is loaded of a page; and per function what its section has."""

    def __init__(self, path):
        super().__init__()
        self.path = path
        self.anchors, self.links, self.loads, self.styles = {""}, [], [], []
        self.sections = {}
        self.section, self.cell, self.style = None, False, False
        self.mermaid = False
        self.figures, self.figure = {}, None  # by what they are of
        self.feed(path.read_text())

    def handle_starttag(self, tag, attributes):
        a = dict(attributes)
        if "id" in a:
            self.anchors.add(a["id"])
        if tag == "a" and "name" in a:
            self.anchors.add(a["name"])
        if tag == "a" and a.get("href"):
            self.links.append(a["href"])
        if tag in LOADS:
            self.loads += [a[k] for k in (LOADS[tag], "xlink:" + LOADS[tag]) if a.get(k)]
            self.loads += [s.split()[0] for s in (a.get("srcset") or "").split(",") if s.split()]
        if tag == "link" and a.get("rel") not in ("canonical", "next", "prev", "alternate"):
            self.loads.append(a.get("href", ""))
        if "style" in a:
            self.styles.append(a["style"])
        self.mermaid |= "mermaid" in (a.get("class") or "").split()
        if tag in ("h1", "h2", "h3"):
            is_function = tag == "h3" and "function" in (a.get("class") or "").split()
            self.section = a.get("id") if is_function else None
            if self.section:
                self.sections[self.section] = {"pictures": [], "drawings": 0, "facts": set()}
        if self.section:
            found = self.sections[self.section]
            if tag == "img":
                found["pictures"].append(a.get("src", ""))
            found["drawings"] += tag == "svg" and a.get("viewbox") is not None and \
                a.get("role") == "img"
            self.cell = tag == "th"
        self.style = tag == "style"
        self.figure = a.get("data-figure")
        if self.figure:
            self.figures.setdefault(self.figure, []).append("")

    def handle_endtag(self, tag):
        if tag == "th":
            self.cell = False
        if tag == "style":
            self.style = False
        self.figure = None

    def handle_data(self, text):
        if self.cell and self.section:
            self.sections[self.section]["facts"].add(text.strip())
        if self.style:
            self.styles.append(text)
        if self.figure:
            self.figures[self.figure][-1] += text


def is_foreign(url):
    return bool(urlsplit(url).scheme not in ("", "data") or url.startswith("//"))


def local(page, url):
    """The file that a link on a page leads to, and the anchor there."""
    parts = urlsplit(url)
    path = page.path.parent / unquote(parts.path) if parts.path else page.path
    if path.is_dir():
        path = path / "index.html"
    return path.resolve(), unquote(parts.fragment)


def style_loads(text):
    text = re.sub(r"/\*.*?\*/", "", text, flags=re.S)
    found = re.findall(r"url\(\s*['\"]?(.*?)['\"]?\s*\)", text)
    return found + re.findall(r"@import\s+['\"](.*?)['\"]", text)


def check(site, functions, told=None):
    wrong = []
    pages = {p.resolve(): Page(p) for p in sorted(site.rglob("*.html"))}
    for page in pages.values():
        where = page.path.relative_to(site)
        if where.name == "404.html":  # its links are absolute: it stands for every folder
            links = []
        else:
            links = page.links + page.loads
        for url in page.loads + [u for s in page.styles for u in style_loads(s)]:
            if is_foreign(url):
                wrong.append(f"{where} loads {url}")
        if page.mermaid:
            wrong.append(f"{where} has a diagram for which the theme loads a script")
        for url in links:
            if is_foreign(url) or url.startswith(("data:", "javascript:")):
                continue
            path, anchor = local(page, url)
            if not path.exists():
                wrong.append(f"{where}: no page {url}")
            elif path in pages and anchor not in pages[path].anchors and anchor != "__search":
                wrong.append(f"{where}: no anchor {url}")
    for style in sorted(site.rglob("*.css")):
        wrong += [f"{style.relative_to(site)} loads {u}" for u in style_loads(style.read_text())
                  if is_foreign(u)]

    index = site / "search/search_index.json"
    texts = json.loads(index.read_text())["docs"] if index.exists() else []
    sought = {entry["location"].partition("#")[2] for entry in texts}
    wrong += [f"{name} is not found by searching" for name in functions if name not in sought]

    found = {}
    for page in pages.values():
        for name, section in page.sections.items():
            if name in found:
                wrong.append(f"{name} has two sections")
            found[name] = (page, section)
    for name in functions:
        if name not in found:
            wrong.append(f"{name} has no section")
            continue
        page, section = found[name]
        pictures = [local(page, p)[0] for p in section["pictures"]]
        good = [p for p in pictures if p.exists() and p.read_bytes()[:8] == b"\x89PNG\r\n\x1a\n"]
        if len(good) < 2 or len(good) != len(pictures):
            wrong.append(f"{name} has {len(good)} of {len(pictures)} pictures")
        if section["drawings"] == 0 and name not in WITHOUT:
            wrong.append(f"{name} has no drawing of its bytes")
        for fact in FACTS:
            if fact not in section["facts"] and fact not in WITHOUT.get(name, ()):
                wrong.append(f"{name} does not tell: {fact}")
    wrong += [f"{name} is no function" for name in found if name not in functions]
    return wrong + check_figures(pages.values(), told or {})


def told_figures(told):
    """All that is to be shown of docs/figures.yml, as it is to be read; sums by their names alone."""
    shown, sums = {}, {}
    for section, entries in told.items():
        for name, value in (entries or {}).items():
            if not isinstance(value, dict):
                shown[f"{section}/{name}"] = value
                continue
            for figure, number in value.items():
                shown[f"{section}/{name}/{figure}"] = f"{number:,}" if isinstance(number, int) else number
                if section == "builds":
                    sums[figure] = sums.get(figure, 0) + number
    return shown, {name: f"{number:,}" for name, number in sums.items()}


def check_figures(pages, told):
    shown, sums = told_figures(told)
    found = [(key, text) for page in pages for key, texts in page.figures.items() for text in texts]
    wrong = [f"the figure {key} is {text}, and not {(shown | sums).get(key)}" for key, text in found
             if (shown | sums).get(key) != text]
    missing = set(shown) | {s for s in sums if s != "tests"}
    return wrong + [f"the figure {key} is not shown" for key in sorted(missing - {k for k, _ in found})]


def check_tests_of_quirks():
    header = (ROOT / "include/lumalane.h").read_text()
    tests = "".join(p.read_text() for p in sorted((ROOT / "tests").rglob("*.cpp")))
    existing = {f"{s}.{t}" for s, t in re.findall(r"TEST(?:_[PF])?\(\s*(\w+),\s*(\w+)\)", tests)}
    text = re.sub(r"\n/{2,3} *", " ", header)
    named = {n for group in re.findall(r"\[((?:[a-z0-9_]+\.[a-z0-9_]+(?:, )?)+)\]", text)
             for n in group.split(", ")} - {"suite.test"}  # which tells how they are named
    if len(named) < 100:
        return [f"only {len(named)} tests are named in the header: their form has changed"]
    return [f"the header names a test that there is not: {n}" for n in sorted(named - existing)]


def functions_of(exports):
    return re.findall(r"^LUMALANE_EXPORT\(\w+, (\w+)\)", exports, re.M)


def main():
    functions = functions_of((ROOT / "abi/exports.inc").read_text())
    told = yaml.safe_load((ROOT / "docs/figures.yml").read_text())
    wrong = check(pathlib.Path(sys.argv[1]), functions, told) + check_tests_of_quirks()
    for fault in wrong:
        print(fault)
    print(f"{len(functions)} functions, {len(wrong)} faults")
    sys.exit(bool(wrong) or len(functions) != 68)


if __name__ == "__main__":
    main()

"""A small site without faults, then with one fault after the other: each must be found."""

import pathlib
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import check_site  # noqa: E402

FACTS = "".join(f"<th>{f}</th>" for f in check_site.FACTS)
GOOD = f"""<link rel="stylesheet" href="a.css"><h1 id="top">Manual</h1><a href="#top">up</a>
<a href="https://example.org/">elsewhere</a><a href="b.html#there">other page</a>
<h3 id="load" class="function">load</h3><img src="one.png"><img src="two.png">
<svg viewBox="0 0 1 1" role="img"></svg><table><tr>{FACTS}</tr></table>
<span data-figure="builds/one/calls">1,000</span> and <span data-figure="builds/two/calls">234</span>,
in all <b data-figure="calls">1,234</b>; <i data-figure="processors/old">narrow</i>
<i data-figure="fuzz/bytes/executions">5,678</i>"""

TOLD = {"builds": {"one": {"calls": 1000}, "two": {"calls": 234}},
        "processors": {"old": "narrow"}, "fuzz": {"bytes": {"executions": 5678}}}

FAULTS = [
    ("no anchor", '"#top"', '"#nowhere"'),
    ("no anchor", "b.html#there", "b.html#not-there"),
    ("no page", "b.html#there", "c.html"),
    ("no page", "two.png", "three.png"),
    ("has 1 of 1 pictures", '<img src="two.png">', ""),
    ("has no drawing", '<svg viewBox="0 0 1 1" role="img"></svg>', ""),
    ("does not tell: Instead", "<th>Instead</th>", ""),
    ("load has no section", 'id="load"', 'id="lode"'),
    ("lode is no function", 'id="load"', 'id="lode"'),
    ("loads https://example.org/a.css", 'href="a.css"', 'href="https://example.org/a.css"'),
    ("loads //example.org/a.js", "<h1", '<script src="//example.org/a.js"></script><h1'),
    ("loads https://example.org/f", "<h1",
     "<style>@font-face{src:url(https://example.org/f)}</style><h1"),
    ("for which the theme loads", "<h1", '<pre class="mermaid"></pre><h1'),
    ("calls is 1,233, and not 1,234", "1,234", "1,233"),
    ("two/calls is 1,234, and not 234", "234</span>", "1,234</span>"),
    ("processors/old is not shown", "processors/old", "processors/new"),
    ("bytes/executions is 5,679, and not 5,678", "5,678", "5,679"),
    ("processors/new is narrow, and not None", "processors/old", "processors/new"),
]


SEARCH = '{"docs": [{"location": "index.html#load"}]}'


def faults_of(index, style="body { color: red }", search=SEARCH):
    with tempfile.TemporaryDirectory() as folder:
        site = pathlib.Path(folder)
        (site / "index.html").write_text(index)
        (site / "b.html").write_text('<p id="there">')
        (site / "a.css").write_text(style)
        (site / "search").mkdir()
        (site / "search/search_index.json").write_text(search)
        for name in ("one.png", "two.png"):
            (site / name).write_bytes(b"\x89PNG\r\n\x1a\n")
        return check_site.check(site, ["load"], TOLD)


def main():
    failures = [f"a good site: {f}" for f in faults_of(GOOD)]
    for expected, before, after in FAULTS:
        assert before in GOOD
        if not any(expected in f for f in faults_of(GOOD.replace(before, after, 1))):
            failures.append(f"not found: {expected}")
    if not faults_of(GOOD, "@import 'https://example.org/b.css';"):
        failures.append("not found: a style sheet that imports another")
    if not any("searching" in f for f in faults_of(GOOD, search='{"docs": []}')):
        failures.append("not found: a function that searching does not find")
    print("\n".join(failures) or f"{len(FAULTS) + 2} faults found")
    sys.exit(bool(failures))


main()

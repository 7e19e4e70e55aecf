"""What the hook reads: the header's form, and tables about speed."""

import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import header  # noqa: E402
import manual  # noqa: E402

HEADER = """// What it is.
#ifndef LUMALANE_H
// ---- Group ---------------
//
// Shared.

// ---- Family
//
// Symbols.

/// Does it. Twice.
///
/// - step: 16 pixels
/// - reads, C = 1: src: C at 0;
///   src_u: 2 at 0
/// - quirk: odd [suite.test]
LUMALANE_API void LUMALANE_CALL function_one(unsigned char *src,
                               int width);
#endif
"""


class Reading(unittest.TestCase):
    def test_header(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "h.h"
            path.write_text(HEADER)
            intro, chapters, _ = header.read(path)
        self.assertEqual(intro, ["What it is."])
        self.assertEqual([(c.title, c.group) for c in chapters],
                         [("Group", "Group"), ("Family", "Group")])
        f = chapters[1].functions()[0]
        self.assertEqual(f.summary, "Does it. Twice.")
        self.assertEqual(f.signature, "void function_one(unsigned char *src, int width);")
        self.assertEqual([(i.key, i.text) for i in f.items],
                         [("step", "16 pixels"), ("reads, C = 1", "src: C at 0; src_u: 2 at 0"),
                          ("quirk", "odd [suite.test]")])

    def test_a_line_of_no_known_form_is_an_error(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "h.h"
            path.write_text(HEADER.replace("///   src_u", "/// src_u"))
            self.assertRaises(ValueError, header.read, path)

    def test_terms(self):
        self.assertEqual(manual.terms(["  W       pixels", "            in a row", "  d, e    drift"]),
                         [["W", "pixels in a row"], ["d, e", "drift"]])
        self.assertEqual(manual.terms(["  A = 1     from row to row", "  B = 2     and so on"]), [])
        self.assertEqual(manual.terms(["a sentence", "of two lines"]), [])

    def test_speed(self):
        page = ("### 320x240\n| Function | avx2 | peer |\n|---|---:|---:|\n"
                "| `one` | 0.1 | 0.2 (2.0) |\n| `two/veil` | 0.3 | |\n### 640x480\n| `one` | 0.4 | |\n"
                "## Summary\n| `one` | 9.0 | |\n| Mean | 2.0 | |\n"
                "## Threads\n### 320x240\n| `one` | 0.05 | |\n")
        self.assertEqual(manual.measured(page),
                         {"one": {"": [("320x240", "0.1"), ("640x480", "0.4")]},
                          "two": {"veil": [("320x240", "0.3")]}})


unittest.main()

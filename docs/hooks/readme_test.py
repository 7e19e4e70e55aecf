"""README shows samples that are compiled and run, and leads to files that exist."""

import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
TEXT = (ROOT / "README.md").read_text()


class Readme(unittest.TestCase):
    def test_programs_are_samples(self):
        files = ("examples/convert/convert.cpp", "docs/samples/windows.cpp")
        programs = re.findall(r"^```cpp\n(.*?)^```", TEXT, re.M | re.S)
        self.assertEqual(programs, [(ROOT / file).read_text() for file in files])

    def test_pipeline_is_the_sample(self):
        pipeline = (ROOT / "docs/samples/gstreamer.sh").read_text()
        self.assertIn("```sh\n" + pipeline + "```", TEXT)

    def test_commands_name_files_that_exist(self):
        named = re.findall(r"(?<![\w/.-])((?:scripts|docs|examples)/[\w./-]*\w)", TEXT)
        self.assertGreater(len(named), 10)
        for name in named:
            self.assertTrue((ROOT / name).exists(), name)

    def test_links_lead_somewhere(self):
        links = re.findall(r"\]\(([^)#]+)", TEXT)
        self.assertGreater(len(links), 10)
        for link in links:
            self.assertTrue((ROOT / link).is_file(), link)


if __name__ == "__main__":
    unittest.main()

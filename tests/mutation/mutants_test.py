"""What mutants.py finds in a text, and that what equivalent.txt lists is still there."""
import json
import os
import tempfile
import types
import unittest
import unittest.mock

import mutate
from mutants import Source


def mutated(text, kind):
    source = Source(text + "\n")
    return {source.applied(m)[:-1] for m in source.mutants() if m.kind == kind}


class MutantsTest(unittest.TestCase):
    def test_constants_are_off_by_one(self):
        self.assertEqual(
            mutated("int a = 0, b = 0x10u, c = 8'000; bool d = true;", "constant"),
            {
                "int a = 1, b = 0x10u, c = 8'000; bool d = true;",
                "int a = 0, b = 0x11u, c = 8'000; bool d = true;",
                "int a = 0, b = 0xfu, c = 8'000; bool d = true;",
                "int a = 0, b = 0x10u, c = 8001; bool d = true;",
                "int a = 0, b = 0x10u, c = 7999; bool d = true;",
                "int a = 0, b = 0x10u, c = 8'000; bool d = false;",
            },
        )

    def test_operators_stand_between_spaces(self):
        self.assertEqual(
            mutated("int f(const char *p) { return -*p + !q; }", "operator"),
            {
                "int f(const char *p) { return *p + !q; }",
                "int f(const char *p) { return -*p - !q; }",
                "int f(const char *p) { return -*p + q; }",
            },
        )

    def test_brackets_of_templates_are_no_comparisons(self):
        self.assertEqual(
            mutated("x = f<4>(a) < b == c;", "comparison"),
            {"x = f<4>(a) <= b == c;", "x = f<4>(a) >= b == c;", "x = f<4>(a) < b != c;"},
        )

    def test_arguments_change_places(self):
        self.assertEqual(
            mutated("x = {f<a, b>(c, (d, e)), g};", "swapped arguments"),
            {"x = {f<a, b>((d, e), c), g};", "x = {g, f<a, b>(c, (d, e))};"},
        )

    def test_parameters_of_one_type_change_places(self):
        self.assertEqual(
            mutated("void f(int a, int b, char *c) {}", "swapped arguments"),
            {"void f(int b, int a, char *c) {}"},
        )

    def test_statements_are_deleted_and_declarations_are_not(self):
        self.assertEqual(
            mutated("void f() { int a = 1; a += 2; if (a) return; g(\n[] { h(); }); }", "deleted statement"),
            {
                "void f() { int a = 1; ; if (a) return; g(\n[] { h(); }); }",
                "void f() { int a = 1; a += 2; if (a) ; g(\n[] { h(); }); }",
                "void f() { int a = 1; a += 2; if (a) return; ;\n }",
                "void f() { int a = 1; a += 2; if (a) return; g(\n[] { ; }); }",
            },
        )

    def test_a_condition_without_an_operator_is_negated(self):
        self.assertEqual(mutated("x; if (f(a)) b;", "operator"), {"x; if (!(f(a))) b;"})

    def test_what_is_told_to_the_compiler_is_left_alone(self):
        text = '#define A 1\nx; static_assert(1 + 1 == 2); // 1\nint a = "1 + 1";\n'
        self.assertEqual(Source(text).mutants(), [])

    def test_lines_are_told_whole(self):
        source = Source("a(1,\n   2);\n")
        (swap,) = [m for m in source.mutants() if m.kind == "swapped arguments"]
        self.assertEqual(source.told(swap), ("a(1, 2);", "a(2, 1);"))


class ResultsTest(unittest.TestCase):
    MUTANT = ["load/yuy2.cpp", "7", "x;", "linux-x64", ""]

    def believed(self, status, ran, file="same"):
        line = json.dumps(dict(mutant=self.MUTANT, status=status, by="a_test", file=file, ran=ran))
        known = mutate.believed([line], {"load/yuy2.cpp": "same"}, ["code", "tests", False])
        return known == {tuple(self.MUTANT): (status, "a_test")}

    def test_who_was_killed_stays_so_while_its_file_and_the_tests_do(self):
        self.assertTrue(self.believed("killed", ["other code", "tests", True]))
        self.assertFalse(self.believed("killed", ["code", "other tests", False]))
        self.assertFalse(self.believed("killed", ["code", "tests", False], file="another"))

    def test_who_survived_is_run_again_when_anything_changes(self):
        self.assertTrue(self.believed("survived", ["code", "tests", False]))
        for ran in (["other code", "tests", False], ["code", "other", False], ["code", "tests", True]):
            self.assertFalse(self.believed("survived", ran))

    def test_every_program_runs_without_a_mutant_too(self):
        build = types.SimpleNamespace(targets=["sse2"], directory=".")
        programs = {stage.program for stage in mutate.stages_without_a_mutant(build)}
        self.assertEqual(programs, set(mutate.PROGRAMS))

    def test_a_test_that_fails_without_a_mutant_ends_the_run(self):
        with tempfile.TemporaryDirectory() as directory:
            os.mkdir(f"{directory}/tests")
            for program in mutate.PROGRAMS:
                os.symlink("/bin/true", f"{directory}/tests/{program}")
            build = types.SimpleNamespace(targets=["sse2"], directory=directory)
            with unittest.mock.patch.object(mutate, "ON_OLDER_PROCESSOR", mutate.Stage("state_test", [])):
                mutate.refuse_failing_tests([build], 2)
                os.remove(f"{directory}/tests/state_test")
                os.symlink("/bin/false", f"{directory}/tests/state_test")
                with self.assertRaisesRegex(SystemExit, "state_test failed without a mutant"):
                    mutate.refuse_failing_tests([build], 2)


class ListTest(unittest.TestCase):
    def test_every_equivalent_mutant_is_one_and_has_a_reason(self):
        mutate.equivalents()


if __name__ == "__main__":
    unittest.main()

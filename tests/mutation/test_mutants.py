"""What counts as a mutant, and that explanations are of mutants that there are."""

import pathlib
import tomllib
import unittest

from mutants import find_mutants, line_of


def lines_changed(text):
    """Each mutant as its kind and the lines that it makes of those it concerns."""
    found = []
    for mutant in find_mutants(text):
        before = text.split("\n")
        after = mutant.applied(text).split("\n")
        found.append((mutant.kind, [new for old, new in zip(before, after) if old != new]))
    return found


class FindMutants(unittest.TestCase):
    def test_swaps_operators_between_blanks(self):
        self.assertIn(("binary", ["    if (a <= b) return;"]), lines_changed("    if (a < b) return;"))
        self.assertIn(("binary", ["x = a - b;"]), lines_changed("x = a + b;"))
        self.assertEqual(lines_changed("std::vector<int>&& x"), [])

    def test_drops_negations(self):
        self.assertIn(("negation", ["    if (done) return;"]), lines_changed("    if (!done) return;"))

    def test_changes_numbers_and_words(self):
        self.assertEqual(lines_changed("x = 1'000;"), [("number", ["x = 1001;"])])
        self.assertEqual(lines_changed("return true;"), [("word", ["return false;"])])
        self.assertEqual(lines_changed("x = 1.5;"), [])

    def test_changes_a_letter_of_printed_words_alone(self):
        self.assertEqual(lines_changed(r'puts("\tready %lg");'), [("string", [r'puts("\tQeady %lg");'])])
        self.assertEqual(lines_changed('puts("%s\\n");'), [])

    def test_leaves_comments_and_directives_alone(self):
        self.assertEqual(lines_changed("// a < b, true"), [])
        self.assertEqual(lines_changed('#include "quorl.h"'), [])
        self.assertEqual(lines_changed("#define A \\\n  true"), [])

    def test_leaves_out_statements_and_swaps_neighbours(self):
        text = "    first();\n    second();\n    return;\n"
        self.assertEqual(lines_changed(text), [
            ("statement", ["    ;"]),
            ("order", ["    second();", "    first();"]),
            ("statement", ["    ;"]),
        ])

    def test_tells_lines(self):
        self.assertEqual(line_of("a\nb\nc", 4), 3)


class Explanations(unittest.TestCase):
    def test_are_of_text_that_is_there(self):
        here = pathlib.Path(__file__).parent
        known = tomllib.loads((here / "explained.toml").read_text(encoding="utf-8"))["mutant"]
        changes = [(entry["file"], entry["before"], entry["after"]) for entry in known]
        self.assertEqual(len(changes), len(set(changes)))
        for file, before, _ in changes:
            text = (here.parents[1] / file).read_text(encoding="utf-8")
            self.assertIn(before, text, file)


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/env python3
"""What changes.py finds to change in a source, on sources of a few lines. mutate.py applies it."""

import os
import sys
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import changes  # noqa: E402


def made(kind, source):
    """The sources that changes of a kind make of a source."""
    return {changes.apply(source, change) for change in changes.changes_of(source)[kind]}


class Changes(unittest.TestCase):
    def test_operators_are_swapped_and_signs_dropped(self):
        self.assertEqual(made("operator", "return a <= b && !c;"),
                         {"return a < b && !c;", "return a <= b || !c;", "return a <= b && c;"})
        self.assertEqual(made("operator", "x = -1;"), {"x = 1;"})

    def test_a_bracket_of_a_template_is_no_operator(self):
        self.assertEqual(made("operator", "std::vector<int> a = f<3>(b);"), set())

    def test_a_condition_is_negated_and_dropped(self):
        self.assertEqual(made("condition", "if (a) return;"),
                         {"if (!(a)) return;", "if (false && (a)) return;",
                          "if (true || (a)) return;"})

    def test_an_operand_is_dropped(self):
        self.assertEqual(made("condition", "return f(a, b) && g(c);"),
                         {"return f(a, b) ;", "return g(c);"})

    def test_rows_of_a_table_are_dropped_one_by_one(self):
        table = "constexpr R kRows[] = {{1, kA}, {2, kB}};"
        self.assertLessEqual({"constexpr R kRows[] = {{2, kB}};", "constexpr R kRows[] = {{1, kA}};"},
                             made("row", table))
        self.assertEqual(made("row", "constexpr int k[] = {7, 8, 9};"),
                         {"constexpr int k[] = {8, 9};", "constexpr int k[] = {7, 9};",
                          "constexpr int k[] = {7, 8};"})

    def test_a_label_is_dropped(self):
        self.assertEqual(made("row", "switch (a) { case kX: case kY: return 1; }"),
                         {"switch (a) {  case kY: return 1; }",
                          "switch (a) { case kX:  return 1; }"})

    def test_a_statement_that_is_a_call_is_dropped(self):
        self.assertEqual(made("call", "{ a.b().c(d, e); x = f(); return g(); }"),
                         {"{ ; x = f(); return g(); }"})

    def test_a_call_behind_a_condition_is_dropped(self):
        self.assertIn("{ if (a) ; }", made("call", "{ if (a) f(b); }"))

    def test_each_character_of_a_text_is_dropped_and_replaced(self):
        self.assertEqual(made("text", 'f("a\\n");'),
                         {'f("\\n");', 'f("x\\n");', 'f("a");', 'f("ax");'})

    def test_numbers_are_off_by_one(self):
        self.assertEqual(made("number", "return 10 + 0;"),
                         {"return 11 + 0;", "return 9 + 0;", "return 10 + 1;"})

    def test_what_no_compiler_reads_stays(self):
        for kind in changes.KINDS:
            self.assertEqual(made(kind, '// if (a == 1) f("b");\n#include "c.h"\n'), set())

    def test_the_lines_are_told_before_and_after(self):
        source = "int a() {\n  return f(1,\n           2);\n}\n"
        number = [c for c in changes.changes_of(source)["number"] if c.text == "3"][0]
        self.assertEqual(changes.before_and_after(source, number), ("2);", "3);"))


if __name__ == "__main__":
    unittest.main()

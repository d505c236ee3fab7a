#!/usr/bin/env python3
"""check_commands.py finds commands, runs them in order and sees each difference."""
import pathlib
import tempfile
import unittest

import check_commands


class Commands(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.source = pathlib.Path(folder.name)
        (self.source / "examples" / "inner").mkdir(parents=True)
        (self.source / "examples" / "inner" / "deck").write_text("a deck\n")

    def found(self, text):
        page = self.source / "page.md"
        page.write_text(text)
        return list(check_commands.faults(page, self.source, "/nowhere", [0]))

    def test_commands_run_in_order_in_one_folder(self):
        self.assertEqual(self.found("Text\n\n    $ echo one > a\n    $ cat a\n    one\n\n"
                                    "```\n$ cat a a\none\none\n```\n"), [])
        self.assertFalse((self.source / "examples" / "a").exists())

    def test_a_page_names_its_folder(self):
        page = "\n    $ cat deck\n    a deck\n"
        self.assertEqual(self.found("<!-- commands: in examples/inner -->\n" + page), [])
        self.assertEqual(len(self.found(page)), 1)

    def test_other_output_is_a_fault(self):
        for shown in ("two", "one\n    more", "", "One"):
            with self.subTest(shown):
                self.assertEqual(len(self.found(f"    $ echo one\n    {shown}\n")), 1)

    def test_blank_lines_belong_to_what_is_printed(self):
        self.assertEqual(self.found("    $ printf 'a\\n\\nb\\n'\n    a\n\n    b\n\n"
                                    "    $ echo c\n    c\n"), [])
        self.assertTrue(self.found("    $ printf 'a\\nb\\n'\n    a\n\n    b\n"))

    def test_messages_count_as_output(self):
        self.assertEqual(self.found("    $ echo note >&2\n    note\n"), [])

    def test_a_failure_is_a_fault_unless_an_error_is_shown(self):
        self.assertEqual(self.found("    $ echo error: no; false\n    error: no\n"), [])
        self.assertTrue(self.found("    $ echo one; false\n    one\n"))
        self.assertTrue(self.found("    $ false | cat\n"))
        self.assertEqual(self.found("    $ false; echo $?\n    1\n"), [])

    def test_numbers_may_differ_in_their_last_digits(self):
        self.assertEqual(self.found("    $ echo x 1.23456 -1e-17 1000\n    x 1.23457 2e-16 1000\n"), [])
        self.assertTrue(self.found("    $ echo x 1.2345\n    x 1.2346\n"))
        self.assertTrue(self.found("    $ echo x 1e-5 1000\n    x 2e-5 1000\n"))
        self.assertTrue(self.found("    $ echo x1 2\n    x2 2\n"))

    def test_dots_stand_for_any_lines(self):
        self.assertEqual(self.found("    $ seq 9\n    1\n    ...\n    8\n    9\n"), [])
        self.assertEqual(self.found("    $ seq 2\n    1\n    ...\n    2\n"), [])
        self.assertTrue(self.found("    $ seq 9\n    1\n    ...\n    8\n"))

    def test_a_companion_is_not_called_without_the_sign(self):
        self.assertEqual(len(self.found("    kestol-view portal.dat\n\n    mpirun -n 2 kestol-mpi a\n")), 2)
        self.assertEqual(self.found("    kestol [-p] inputfile\n    kestol-view OPTIONS\n"
                                    "\ntext\n\n    #!/bin/sh\n    kestol a\n"), [])


if __name__ == "__main__":
    unittest.main()

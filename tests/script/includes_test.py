"""script/check_includes.py must see every include that the table in script/layers forbids: each is
planted alone in a small tree and expected back as the only complaint."""
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SCRIPT = ROOT / "script" / "check_includes.py"
sys.path.insert(0, str(SCRIPT.parent))
import check_includes  # noqa: E402

GROUND, TABLE = check_includes.read_table(ROOT / "script" / "layers")
FORBIDDEN = [(folder, other) for folder in TABLE for other in TABLE
             if other != folder and other not in TABLE[folder]]


class Tree(unittest.TestCase):
    """A small tree under the table of this one."""

    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="kestol-includes-"))
        self.addCleanup(shutil.rmtree, self.root)
        self.write("script/layers", (ROOT / "script" / "layers").read_text())

    def fill(self):
        """Every folder of the table includes all it may."""
        for folder, allowed in TABLE.items():
            lines = [f'#include "{other}/Part.h"' for other in sorted(allowed | {folder})]
            lines += [f'#include "{header}"' for header in sorted(GROUND)]
            for suffix in ("h", "cc", "inc"):
                self.write(f"{folder}/Allowed.{suffix}", "\n".join([*lines, "#include <vector>", ""]))

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def complaints(self):
        return list(check_includes.broken(self.root))

    def expect_alone(self, name, text, complaint):
        """`text` in the file `name` is the only thing that is wrong."""
        self.write(name, text)
        self.assertEqual(self.complaints(), [complaint])
        (self.root / name).unlink()


class Table(unittest.TestCase):
    def test_names_every_folder_of_the_source(self):
        for folder in ("algebra", "model", "input", "analysis", "output", "main"):
            self.assertIn(folder, TABLE)

    def test_ground_headers_are_two(self):
        self.assertEqual(GROUND, {"main/ErrorChannel.h", "output/InfoFile.h"})

    def test_names_only_folders_that_have_a_row(self):
        for folder, allowed in TABLE.items():
            self.assertLessEqual(allowed, set(TABLE), folder)

    def test_has_no_two_folders_that_include_each_other(self):
        for folder, allowed in TABLE.items():
            for other in allowed:
                self.assertNotIn(folder, TABLE[other], other)

    def test_forbids_something_to_every_folder(self):
        self.assertEqual({folder for folder, _ in FORBIDDEN}, set(TABLE))


class Includes(Tree):
    def test_what_the_table_allows_passes(self):
        self.fill()
        self.assertEqual(self.complaints(), [])

    def test_what_it_forbids_is_named_with_its_line_in_every_kind_of_file(self):
        for folder, other in FORBIDDEN:
            for name in ("Broken.h", "Broken.cc", "Broken.inc", "deeper/Broken.cc"):
                with self.subTest(folder=folder, other=other, name=name):
                    self.expect_alone(f"{folder}/{name}", f'#pragma once\n\n#include "{other}/Part.h"\n',
                                      f"{folder}/{name}:3: {folder}/ must not include {other}/Part.h")

    def test_angle_brackets_and_blanks_hide_nothing(self):
        for line in ("#include <main/Part.h>", '  #  include "main/Part.h"', '#include"main/Part.h"'):
            with self.subTest(line=line):
                self.expect_alone("algebra/Broken.cc", line + "\n",
                                  "algebra/Broken.cc:1: algebra/ must not include main/Part.h")

    def test_headers_beside_the_ground_headers_are_no_ground(self):
        for header in ("main/CommandLine.h", "output/OutputText.h"):
            self.expect_alone("algebra/Broken.h", f'#include "{header}"\n',
                              f"algebra/Broken.h:1: algebra/ must not include {header}")

    def test_includes_must_name_a_folder_of_the_table(self):
        for header in ("Part.h", "../main/Part.h", "tests/support/Part.h", "elsewhere/Part.h"):
            with self.subTest(header=header):
                self.expect_alone("main/Broken.cc", f'#include "{header}"\n',
                                  f"main/Broken.cc:1: main/ must not include {header}")

    def test_a_folder_without_a_row_is_reported(self):
        for name in ("elsewhere/Part.h", "elsewhere/deeper/Part.cc", "programs/other/Part.inc",
                     "Part.cc"):
            with self.subTest(name=name):
                self.expect_alone(name, "", f"{name}: script/layers does not know its folder")

    def test_what_is_no_part_of_the_product_is_left_alone(self):
        for folder in ("tests/unit", "bench", "build/release", ".cache"):
            self.write(f"{folder}/Free.cc", '#include "main/Part.h"\n')
        self.assertEqual(self.complaints(), [])

    def test_every_violation_of_a_file_is_listed(self):
        self.write("algebra/Broken.cc", '#include "model/Part.h"\n#include "input/Part.h"\n')
        self.assertEqual(self.complaints(),
                         ["algebra/Broken.cc:1: algebra/ must not include model/Part.h",
                          "algebra/Broken.cc:2: algebra/ must not include input/Part.h"])


class Program(Tree):
    def setUp(self):
        super().setUp()
        self.fill()

    def run_on_the_tree(self, *options):
        done = subprocess.run([sys.executable, "-B", str(SCRIPT), *options, str(self.root)],
                              capture_output=True, text=True)
        return done.returncode, done.stdout

    def test_ends_with_0_when_all_is_well(self):
        self.assertEqual(self.run_on_the_tree(), (0, "includes run one way\n"))

    def test_ends_with_1_and_the_complaints(self):
        self.write("model/Broken.h", '#include "main/Part.h"\n')
        self.assertEqual(self.run_on_the_tree(),
                         (1, "model/Broken.h:1: model/ must not include main/Part.h\n"))

    def test_lists_the_folders_that_exist_in_the_order_of_the_table(self):
        shutil.rmtree(self.root / "programs")
        wanted = [folder for folder in TABLE if not folder.startswith("programs/")]
        self.assertEqual(self.run_on_the_tree("--folders"), (0, "\n".join(wanted) + "\n"))


if __name__ == "__main__":
    unittest.main()

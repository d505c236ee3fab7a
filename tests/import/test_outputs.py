"""Files that are written: which ones, where, and what is left when that fails."""
import fcntl
import os
import stat
import subprocess
import sys
import time
import unittest

from program import MESH, RECIPE, Program
from support import PROGRAM


class Outputs(Program):
    def test_outputs_that_name_an_input_are_refused(self):
        os.link(self.folder / "m.msh", self.folder / "same.msh")
        os.symlink("r.toml", self.folder / "link.toml")
        for arguments, message in (
                (["-o", "m.msh"], "m.msh: error: the output names the mesh itself"),
                (["-o", "./m.msh"], "./m.msh: error: the output names the mesh itself"),
                (["-o", "same.msh"], "same.msh: error: the output names the mesh itself"),
                (["-o", "link.toml"], "link.toml: error: the output names the recipe itself"),
                (["-o", "d.dat", "--map", "r.toml"],
                 "r.toml: error: the output names the recipe itself"),
                (["-o", "d.dat", "--map", "d.dat"],
                 "d.dat: error: the output names the deck itself")):
            with self.subTest(arguments=arguments):
                self.refused(message + " [output]", "--force", "m.msh", "r.toml", *arguments)
        self.assertEqual((self.read("m.msh"), self.read("r.toml")), (MESH, RECIPE))
        self.refused("m.msh: error: the output names the mesh itself [output]", "--list", "m.msh",
                     "-o", "m.msh")

    def test_a_deck_on_standard_output(self):
        done = self.run_program("m.msh", "r.toml", "-o", "-")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.made("m.msh", "r.toml", "-o", "d.dat")
        self.assertEqual(done.stdout, self.read("d.dat"))
        self.assertIn('load "tip" on "tip"', done.stderr)

    def test_a_map_on_standard_output(self):
        done = self.run_program("m.msh", "r.toml", "-o", "d.dat", "--map", "-")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue(done.stdout.startswith("kind,old,new\nnode,1,1\n"))
        self.assertIn('load "tip" on "tip"', done.stderr)

    def test_a_pipe_is_written_directly(self):
        os.mkfifo(self.folder / "pipe")
        with subprocess.Popen(["cat", "pipe"], cwd=self.folder, stdout=subprocess.PIPE,
                              text=True) as reader:
            self.made("m.msh", "r.toml", "-o", "pipe")
            text = reader.communicate(timeout=60)[0]
        self.assertTrue(text.endswith("# <<< kestol-import loads\n"))
        self.assertTrue(stat.S_ISFIFO(os.stat(self.folder / "pipe").st_mode))

    def test_a_full_disk_leaves_nothing(self):
        done = self.run_program("m.msh", "r.toml", "-o", "/dev/full")
        self.assertEqual(done.returncode, 2)
        self.assertIn("/dev/full: error: cannot be written: No space left on device [output]",
                      done.stderr)
        with open("/dev/full", "w", encoding="utf-8") as full:
            for arguments in (["m.msh", "r.toml", "-o", "-"], ["--list", "m.msh"],
                              ["m.msh", "r.toml", "-o", "d.dat"]):
                done = self.run_program(*arguments, capture_output=False, stdout=full,
                                        stderr=subprocess.PIPE)
                self.assertEqual(done.returncode, 2, arguments)
                self.assertIn("standard output: error: cannot be written: No space left on device "
                              "[output]\n", done.stderr)
                self.assertNotIn("Traceback", done.stderr)
        before = sorted(os.listdir(self.folder))
        limited = f"ulimit -f 0; exec {sys.executable} -B {PROGRAM} m.msh r.toml -o e.dat"
        done = subprocess.run(["sh", "-c", "trap '' XFSZ; " + limited], cwd=self.folder, text=True,
                              stderr=subprocess.PIPE, check=False)
        self.assertEqual(done.returncode, 2)
        self.assertIn("e.dat: error: cannot be written: File too large [output]", done.stderr)
        self.assertEqual(sorted(os.listdir(self.folder)), before)

    def test_files_get_their_names_together(self):
        """A folder takes the name of the map while the report waits for its reader."""
        (self.folder / "d.dat").write_text("the old deck")
        reader, writer = os.pipe()
        fcntl.fcntl(writer, fcntl.F_SETPIPE_SZ, 4096)
        os.write(writer, bytes(4096))
        with subprocess.Popen([sys.executable, "-B", PROGRAM, "m.msh", "r.toml", "-o", "d.dat",
                               "--map", "map.csv", "--force"], cwd=self.folder, stdout=writer,
                              stderr=subprocess.PIPE, text=True) as process:
            os.close(writer)
            waits = time.monotonic() + 60
            while not list(self.folder.glob(".map.csv.*.tmp")) and time.monotonic() < waits:
                time.sleep(0.01)
            (self.folder / "map.csv").mkdir()
            with open(reader, "rb") as report:
                report.read()
            said = process.stderr.read()
        place = os.path.realpath(self.folder / "map.csv")
        self.assertEqual((process.returncode, said.splitlines()[-1]), (
            2, f"{place}: error: cannot be written: Is a directory [output]"))
        self.assertEqual(sorted(os.listdir(self.folder)), ["d.dat", "m.msh", "map.csv", "r.toml"])
        self.assertEqual((self.folder / "d.dat").read_text(), "the old deck")
        self.run_program("--force", "m.msh", "r.toml", "-o", "d.dat")
        self.assertEqual(sorted(os.listdir(self.folder)), ["d.dat", "m.msh", "map.csv", "r.toml"])
        self.assertIn("PROBLEM", (self.folder / "d.dat").read_text())

    def test_folders_that_are_not_there_or_closed(self):
        self.refused("no/d.dat: error: cannot be written: No such file or directory [output]",
                     "m.msh", "r.toml", "-o", "no/d.dat")
        self.refused(".: error: cannot be written: Is a directory [output]", "m.msh", "r.toml",
                     "-o", ".")
        self.refused("none.toml: error: cannot be read: No such file or directory [file]",
                     "m.msh", "none.toml", "-o", "d.dat")

    def test_links_and_modes_stay(self):
        self.made("m.msh", "r.toml", "-o", "real.dat")
        os.chmod(self.folder / "real.dat", 0o640)
        os.symlink("real.dat", self.folder / "link.dat")
        self.made("--force", "m.msh", "r.toml", "-o", "link.dat")
        self.assertTrue((self.folder / "link.dat").is_symlink())
        self.assertEqual(stat.S_IMODE(os.stat(self.folder / "real.dat").st_mode), 0o640)
        self.assertEqual(sorted(os.listdir(self.folder)),
                         ["link.dat", "m.msh", "r.toml", "real.dat"])

    def test_little_memory_is_a_message(self):
        limited = (f"ulimit -v 400000; OPENBLAS_NUM_THREADS=1 exec {sys.executable} -B {PROGRAM} "
                   "huge.msh r.toml -o d.dat")
        with open(self.folder / "huge.msh", "wb") as huge:
            huge.write(MESH.encode())
            huge.truncate(500_000_000)
        done = subprocess.run(["sh", "-c", limited], cwd=self.folder, text=True, check=False,
                              stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, done.stderr),
                         (2, "huge.msh: error: not enough memory [memory]\n"))

    def test_a_reader_that_leaves_early(self):
        done = subprocess.run(["sh", "-c", f"{sys.executable} -B {PROGRAM} m.msh r.toml -o - | :"],
                              cwd=self.folder, text=True, stderr=subprocess.PIPE, check=False)
        self.assertNotIn("Traceback", done.stderr)


if __name__ == "__main__":
    unittest.main()

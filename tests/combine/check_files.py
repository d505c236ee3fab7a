#!/usr/bin/env python3
"""What kestol-combine writes: the schema, tables, files for ParaView, the list, the text; every option.

    check_files.py kestol-combine kestol-export kestol examples
"""

from __future__ import annotations

import csv
import json
import os
import re
import subprocess
import unittest
import xml.etree.ElementTree
from pathlib import Path

import jsonschema

from combine_documents import COMBINE, COMBINED, GENERATED, Documents
from combine_run import CASES, on_terminal

HERE = Path(__file__).parent


class Files(Documents):
    def test_schema(self) -> None:
        schema = json.loads((HERE / "combine.schema.json").read_text(encoding="utf-8"))
        jsonschema.Draft7Validator.check_schema(schema)
        self.folder.write("c.toml", GENERATED)
        document = self.document("c.toml")
        jsonschema.validate(document, schema)
        self.assertEqual(document["units"], {"force": "kN", "length": "m", "pressure": "kPa"})
        self.assertEqual(document["deck"], "portal.dat")

    def test_parts_are_written_as_asked_for(self) -> None:
        for parts in (["cases"], ["combinations"], ["envelopes"], ["cases", "envelopes"]):
            document = self.document("c.toml", *("--" + part for part in parts))
            self.assertEqual(document.keys() - {"schema", "deck", "units"}, set(parts))

    def table(self, name: str) -> list[dict[str, str]]:
        with open(self.folder.path / name, encoding="utf-8", newline="") as file:
            return list(csv.DictReader(file))

    def test_tables(self) -> None:
        end = self.folder.combine("c.toml", "--csv", "t", "--json", "out.json")
        self.assertEqual((end.status, end.out, end.err), (0, "", ""))
        document = json.loads(self.folder.read("out.json"))
        rows = self.table("t_stations.csv")
        self.assertEqual(len(rows), 5 * 3 * 21)
        self.assertEqual([rows[k * 63]["result"] for k in range(5)],
                         ["G", "Q1", "W", "ULS1", "lift"])
        station = document["combinations"][0]["result"]["beams"][1]["stations"][10]
        row = next(r for r in rows if r["result"] == "ULS1" and r["element"] == "2"
                   and float(r["x [m]"]) == 3.0)
        self.assertEqual(float(row["Mz [kN m]"]), station["Mz"])
        rows = self.table("t_envelope_stations.csv")
        self.assertEqual(len(rows), 3 * 21 * 6 * 2)
        row = next(r for r in rows if (r["element"], r["station"], r["value"], r["extreme"]) ==
                   ("2", "10", "Mz", "max"))
        extreme = document["envelopes"]["beams"][1]["stations"][10]["Mz"]
        self.assertEqual(float(row["Mz [kN m]"]), extreme["max"])
        self.assertEqual(row["combination"], extreme["maxBy"])
        self.assertEqual(float(row["N [kN]"]), extreme["maxWith"]["N"])
        self.assertEqual(float(row["x [m]"]), 3.0)
        reaction = self.table("t_envelope_reactions.csv")[0]
        self.assertEqual((reaction["node"], reaction["between"], reaction["value"]),
                         ("1", "0", "Fx"))
        self.assertEqual({name for name in self.folder.names() if "envelope" in name},
                         {f"t_envelope_{n}.csv"
                          for n in ("nodes", "stations", "deflections", "reactions")})

    def test_names_with_commas_are_quoted_in_tables(self) -> None:
        self.folder.write("c.toml", COMBINED.replace("ULS1", '"U, 1"'))
        self.folder.combine("c.toml", "--csv", "t")
        self.assertIn("U, 1", {row["result"] for row in self.table("t_nodes.csv")})

    def test_files_for_paraview(self) -> None:
        self.folder.write("c.toml", COMBINED.replace("lift", '"a/b"') + '"a b" = { G = 1 }\n')
        end = self.folder.combine("c.toml", "--vtu", "v")
        self.assertEqual((end.status, end.out, end.err), (0, "", ""))
        names = ["v_G.vtu", "v_Q1.vtu", "v_W.vtu", "v_ULS1.vtu", "v_a_b.vtu", "v_a_b_2.vtu"]
        collection = xml.etree.ElementTree.parse(self.folder.path / "v.pvd")
        entries = [(float(e.get("timestep", "")), e.get("file"))
                   for e in collection.iter("DataSet")]
        self.assertEqual(entries, list(zip(map(float, range(6)), names)))
        for name in names:
            head = (self.folder.path / name).read_bytes()[:200]
            self.assertIn(b"UnstructuredGrid", head)
        self.assertEqual({n for n in self.folder.names() if n.startswith("v")}, {*names, "v.pvd"})

    def test_list(self) -> None:
        self.folder.write("c.toml", GENERATED)
        end = self.folder.combine("--list", "c.toml")
        self.assertEqual((end.status, end.err), (0, ""))
        self.assertEqual(end.out, """\
combination     G    Q1     W  formula
ULS1         1.35   1.5   0.9  1.35 G + 1.5 Q1 + 0.9 W
lift            1     -  -1.5  G - 1.5 W
6.10-1       1.35     -     -  1.35 G
6.10-2          1     -     -  G
6.10-3       1.35   1.5     -  1.35 G + 1.5 Q1
6.10-4          1   1.5     -  G + 1.5 Q1
6.10-5       1.35   1.5   0.9  1.35 G + 1.5 Q1 + 1.5*0.6 W
6.10-6          1   1.5   0.9  G + 1.5 Q1 + 1.5*0.6 W
6.10-7       1.35     -   1.5  1.35 G + 1.5 W
6.10-8          1     -   1.5  G + 1.5 W
6.10-9       1.35  1.05   1.5  1.35 G + 1.5 W + 1.5*0.7 Q1
6.10-10         1  1.05   1.5  G + 1.5 W + 1.5*0.7 Q1
6.16b-1         1   0.3     -  G + 0.3 Q1
""")
        self.assertEqual(self.folder.combine("--list", "c.toml", "-o", "list.txt").out, "")
        self.assertEqual(self.folder.read("list.txt"), end.out)

    def test_overrides_and_exclusive_groups_of_the_file(self) -> None:
        self.folder.write("c.toml", CASES.replace('"live-B"', '"wind"') + """[eurocode]
rules = ["6.10ab"]
exclusive = [["W", "Q1"]]
psi = { wind = [0.5, 0.2, 0] }
gamma = { G = [1.2, 0.9], Q = 1.4 }
xi = 0.9
""")
        lines = self.folder.combine("--list", "c.toml").out.splitlines()
        formulas = [line.split("  ")[-1] for line in lines[1:]]
        self.assertEqual(formulas, [
            "1.2 G", "0.9 G", "1.2 G + 1.4*0.5 Q1", "0.9 G + 1.4*0.5 Q1", "1.2 G + 1.4*0.5 W",
            "0.9 G + 1.4*0.5 W", "0.9*1.2 G", "0.9*1.2 G + 1.4 Q1", "0.9 G + 1.4 Q1",
            "0.9*1.2 G + 1.4 W", "0.9 G + 1.4 W"])

    def test_separate_permanent_case(self) -> None:
        self.folder.write("c.toml", CASES.replace('"live-B"', '"permanent"\nseparate = true') +
                          '[eurocode]\nrules = ["6.10"]\n')
        out = self.folder.combine("--list", "c.toml").out
        self.assertIn("G + 1.35 Q1\n", out)
        self.assertIn("1.35 G + Q1\n", out)

    def test_text(self) -> None:
        end = self.folder.combine("c.toml")
        self.assertEqual((end.status, end.err), (0, ""))
        blocks = end.out.split("\n\n")
        document = self.document("c.toml")
        extreme = document["envelopes"]["beams"][1]["stations"][10]["Mz"]
        block = next(b for b in blocks if b.startswith("ENVELOPE beam 2, station 10/20 "))
        lines = block.splitlines()
        self.assertEqual(lines[0].split()[-4:], ["min", "by", "max", "by"])
        place = next(i for i, line in enumerate(lines) if line.startswith("Mz [kN m]"))
        words = lines[place].split()
        self.assertAlmostEqual(float(words[-2]), extreme["max"], delta=1e-4 * extreme["max"])
        self.assertEqual(words[-1], extreme["maxBy"])
        self.assertTrue(lines[place + 1].startswith("  with N, Vy "))
        self.assertTrue(any(b.startswith("ENVELOPE reaction at node 4 ") for b in blocks))
        self.assertTrue(any(b.startswith("ENVELOPE node ") for b in blocks))
        self.assertEqual(self.folder.combine("c.toml", "-o", "text").out, "")
        self.assertEqual(self.folder.read("text"), end.out)
        self.assertEqual(self.folder.combine("c.toml", "-o", "-").out, end.out)

    def test_standard_output_takes_the_document(self) -> None:
        end = self.folder.combine("c.toml", "--json", "-")
        self.assertEqual((end.status, end.err), (0, ""))
        self.assertEqual(json.loads(end.out)["schema"], "kestol-combine/1")

    def test_help_and_version(self) -> None:
        end = self.folder.combine("--help")
        self.assertEqual((end.status, end.err), (0, ""))
        for option in ("--csv", "--json", "--vtu", "--list", "--cases", "--combinations",
                       "--envelopes", "--solver", "-o", "-q", "-v", "--version"):
            self.assertIn(option, end.out)
        self.assertIn("COMBINATIONS.toml REQUIRED  the model, its cases and combinations\n", end.out)
        self.assertRegex(end.out, "--version +the version\n")
        self.folder.combine("c.toml", "--csv", "PREFIX", "--vtu", "PREFIX")
        for name in ("PREFIX_nodes.csv", "PREFIX_stations.csv", "PREFIX_NAME.vtu", "PREFIX.pvd"):
            self.assertRegex(end.out, rf"--(csv|vtu) PREFIX +.*\b{re.escape(name)}")
            self.assertIn(name.replace("NAME", "ULS1"), self.folder.names())
        end = self.folder.combine("--version")
        self.assertEqual((end.status, end.err), (0, ""))
        self.assertRegex(end.out, r"^kestol-combine \d+\.\d+\.\d+\n$")

    def test_verbose_and_quiet(self) -> None:
        loud = self.folder.combine("c.toml", "-v", "--solver", "skyline").err
        self.assertEqual(loud.splitlines()[:3], ["", "INFORMATION ABOUT STIFFNESS MATRIX",
                                                 "Sky matrix storage with Txolesky"])
        self.assertEqual(self.folder.combine("c.toml", "-q").err, "")

    def test_long_work_shows_its_progress_on_a_terminal(self) -> None:
        """The model comes through a pipe, in the third second."""
        os.mkfifo(self.folder.path / "slow")
        self.folder.write("c.toml", COMBINED.replace("portal.dat", "slow"))
        line = r"\r[^\r\n]*\x1b\[K"
        shown = rf"\rINFORMATION ABOUT STIFFNESS MATRIX\x1b\[K({line})*\r\x1b\[K"
        for options, wanted in ([], shown), (["-q"], ""):
            with subprocess.Popen(["sh", "-c", "(sleep 2.3; cat portal.dat) > slow"], cwd=self.folder.path):
                status, said = on_terminal(self.folder.path, COMBINE, "c.toml", *options)
            self.assertEqual(status, 0, said)
            self.assertRegex(said, f"^{wanted}$")


if __name__ == "__main__":
    unittest.main()

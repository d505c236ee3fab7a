#!/usr/bin/env python3
"""The finding of the worked example is found, at its line, and only where it should be:

    check_finding.py PROGRAM DECK
"""
import pathlib
import subprocess
import sys
import tempfile

program, deck = sys.argv[1:]
TEXT = "extremes between the stations of the beams are missed: 20 divisions? [few-divisions]"


def findings(text):
    with tempfile.TemporaryDirectory() as folder:
        (pathlib.Path(folder) / "deck.dat").write_text(text)
        return subprocess.run([program, "deck.dat"], cwd=folder, capture_output=True, text=True,
                              check=False).stderr


sound = pathlib.Path(deck).read_text()
few = sound.replace("\nmesh\n", "\nNumOfDivisions=3\nmesh\n", 1)
line = few.splitlines().index("NumOfDivisions=3") + 1
if not findings(few).startswith(f"deck.dat:{line}:1: warning: {TEXT}\n"):
    sys.exit(findings(few))
for text in (sound, few.replace("=3\n", "=4\n", 1)):
    if findings(text) != "deck.dat: nothing found\n":
        sys.exit(findings(text))
codes = subprocess.run([program, "--list-codes"], check=True, capture_output=True, text=True).stdout
if "few-divisions" not in codes:
    sys.exit(codes)

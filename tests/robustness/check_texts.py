#!/usr/bin/env python3
"""Feeds texts that are hardly decks. check_texts.py [--sanitized] PROGRAM"""
import argparse
import random

from kestol_run import Checker

HEADER = b"problem p\ntype 2d\n"
COORDINATES = b"mesh dimension 2 elemtype Linear nnode 2 coordinates\n1 0 0\n2 3 0\nend\n"
MESH = COORDINATES + b"elements\n1 1 2 1\nend\n"
REST = (b"materials\n1 E=2e11 A=1e-2 Iz=1e-5\nend\nconstraints\n1 111 0 0 0\nend\n"
        b"nodal_point_loads\n2 0 -1000 0\nend\n")
DECK = HEADER + MESH + REST

LONG = 10_000_000  # characters

OUT_OF_RANGE = "error: number out of range in input file\n"


def long_texts(checker):
    """Lines and words far longer than any buffer."""
    plain = checker.expect_success(DECK, "the plain deck")
    blanks = b" " * LONG
    for what, deck in {
            "long comment": HEADER + b"#" + b"c " * (LONG // 2) + b"\n" + MESH + REST,
            "long comment without blanks": HEADER + b"#" * LONG + b"\n" + MESH + REST,
            "long title": b"problem " + b"t" * LONG + b"\ntype 2d\n" + MESH + REST,
            "long blanks": DECK.replace(b"1 0 0\n", b"1 0 " + blanks + b"0\n", 1),
            "long number": DECK.replace(b"2 3 0\n", b"2 3." + b"0" * LONG + b" 0\n", 1),
            "long end of a section": DECK.replace(b"Iz=1e-5\nend", b"Iz=1e-5\nend" + b" x" * 9999),
            "material line with many keys": DECK.replace(b"Iz=1e-5", b" E=2e11" * 100_000 +
                                                         b" Iz=1e-5")}.items():
        checker.expect(checker.expect_success(deck, what) == plain, f"{what}: other results")
    word = b"w" * LONG
    checker.expect_refusal(HEADER + word, "long keyword",
                           ("Unknown key name=" + "w" * LONG)[:2047])
    checker.expect_refusal(word, "one long word", "can't find word ***problem*** in input file\n")
    checker.expect_refusal(HEADER + COORDINATES + b"elements\n1 1 2 1 " + word + b"\nend\n",
                           "long inline key")
    checker.expect_refusal(DECK.replace(b"E=2e11", word + b"=1"), "long material key")


def numbers(checker):
    """Numbers that do not fit, or are none."""
    for old, new in ((b"\n2 3 0", b"\n2147483648 3 0"), (b"1 1 2 1", b"1 1 4294967298 1"),
                     (b"1 1 2 1", b"1 1 2 99999999999"), (b"\n1 E", b"\n-2147483649 E"),
                     (b"\n1 111 ", b"\n99999999999 111 "), (b"\n2 0 -1000", b"\n4294967298 0 -1000"),
                     (b"dimension 2", b"dimension 99999999999"),
                     (b"nnode 2", b"nnode 99999999999")):
        checker.expect_refusal(DECK.replace(old, new), f"{new}", OUT_OF_RANGE)
    for value in (b"nan", b"inf", b"-inf", b"1e999", b"-nan"):
        checker.expect_refusal(DECK.replace(b"2 3 0", b"2 3 " + value), f"coordinate {value}",
                               "error: node: 2 has not correct coordinates\n")
        checker.expect_refusal(DECK.replace(b"111 0 0 0", b"111 0 0 " + value), f"support {value}")
        checker.expect_refusal(DECK.replace(b"-1000", value), f"load {value}")
        checker.expect_refusal(DECK.replace(b"E=2e11", b"E=" + value), f"modulus {value}")


def early_sections(checker):
    """Sections that ask for nodes or elements before there are any."""
    for section in (b"constraints\n1 111 0 0 0\nend\n", b"rotules\n1\nend\n",
                    b"nodal_point_loads\n1 0 0 0\nend\n", b"global_pressure_loads\n1 0 0\nend\n",
                    b"global_projected_pressure_loads\n1 0 0\nend\n",
                    b"local_pressure_loads\n1 0 0\nend\n", b"face_loads\n1 0 0\nend\n"):
        checker.expect_refusal(HEADER + section + MESH + REST, f"before any mesh: {section}")
        empty = section.split(b"\n")[0] + b"\nend\n"
        checker.expect_success(HEADER + empty + MESH + REST, f"before any mesh: {empty}")


def garbage(checker):
    """Bytes by chance, alone and behind good beginnings; the same ones every time."""
    chance = random.Random(2)
    for head in (b"", b"problem type ", HEADER, HEADER + b"mesh ", HEADER + COORDINATES,
                 HEADER + b"units_names\n", HEADER + MESH + b"materials\n1 ", HEADER + MESH,
                 HEADER + MESH + b"constraints\n", HEADER + MESH + b"nodal_point_loads\n"):
        for size in (1, 100, 100_000):
            checker.expect_refusal(head + b" \1" + chance.randbytes(size) + b"\0",
                                   f"{size} bytes behind {head}")


def exhausted_memory(checker):
    """Models that do not fit the address space."""
    heap = "Not space available on heap"
    nodes = 60_000
    lines = [HEADER, b"mesh dimension 2 elemtype Linear nnode 2 coordinates\n"]
    lines += [b"%d %d 0\n" % (i, i) for i in range(1, nodes + 1)]
    lines += [b"end\nelements\n"]
    lines += [b"%d %d %d 1\n" % (i, i, i + 1) for i in range(1, nodes)]
    lines += [b"end\n", REST.replace(b"\n2 0", b"\n%d 0" % nodes)]
    deck = b"".join(lines)
    for megabytes in (12, 16, 24):
        checker.expect_refusal(deck, f"{nodes} nodes in {megabytes} MB", heap,
                               memory=megabytes * 2**20)
    # The hinge codes are a table by element number.
    hinged = DECK.replace(b"1 1 2 1", b"2147483647 1 2 1") + b"rotules\n2\nend\n"
    checker.expect_refusal(hinged, "largest element number", heap, memory=2**30)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--sanitized", action="store_true")
    parser.add_argument("program")
    arguments = parser.parse_args()
    checker = Checker(arguments.program, arguments.sanitized)
    long_texts(checker)
    numbers(checker)
    early_sections(checker)
    garbage(checker)
    if not arguments.sanitized:  # the sanitizers need all of the address space
        exhausted_memory(checker)
    checker.finish()


if __name__ == "__main__":
    main()

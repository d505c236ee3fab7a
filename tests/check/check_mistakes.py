"""check_mistakes.py KESTOL-CHECK: each mistake of mistakes.py is found at its line, under its name, and
nothing else is; the sound decks have no finding; four mistakes in one deck are all found."""
import random
import sys

from bases import BASES
from checker import Checker, Score, brief
from mistakes import MISTAKES, deck_of, line_of


def check_bases(checker, score):
    for name, text in BASES.items():
        score.equal(brief(checker.findings(text)), [], name)


def check_single(checker, score):
    for row in MISTAKES:
        text = deck_of(row)
        found = checker.findings(text)
        line = line_of(row, text)
        right = len(found) == 1 and found[0]["code"] == row[0] and line in (None, found[0]["line"])
        score.expect(right, row[:4], f"line {line}", *("\n    %s" % (b,) for b in brief(found)))


def check_syntax_only(checker, score):
    """What the text says is found without the model."""
    of_text = {"number-cut", "key-prefix", "unknown-word", "missing-end", "node-number", "surplus",
               "empty-value", "keyword-in-text", "unknown-node", "unknown-element", "unknown-material",
               "number-gap", "duplicate-number", "syntax", "support-code", "replaced-support",
               "value-without-code", "degrees", "units-order", "units-default"}
    for row in MISTAKES:
        text = deck_of(row)
        found = [f["code"] for f in checker.findings(text, "--syntax")]
        score.equal(found, [row[0]] if row[0] in of_text else [c for c in found if c == row[0]],
                    row[:4])


def check_many(checker, score):
    """Mistakes on lines of their own, of which none hides another."""
    alone = {"rigid-motion", "mechanism", "large-displacement", "no-loads", "spring", "cost",
             "load-on-fixed", "duplicate-load", "duplicate-number", "number-gap", "crossing-members",
             "unknown-node", "ill-conditioned", "hinge-first", "model", "bad-shape", "zero-size",
             "corner-diagonal", "stiff-element", "magnitude", "opposite-normals"}
    random.seed(4)
    for _ in range(80):
        base = random.choice(["portal", "space", "plate", "springs"])
        lines = BASES[base].split("\n")
        rows = [r for r in MISTAKES if r[1] == base and len(r) == 4 and r[0] not in alone]
        random.shuffle(rows)
        wanted = {}
        for row in rows:
            changed = deck_of(row).split("\n")
            if len(changed) != len(lines) or len(wanted) == 4:
                continue
            different = [i for i, line in enumerate(lines) if changed[i] != line]
            broken = any(w in changed[different[0]] for w in ("coordinates", "TYPE", "dimension"))
            lost = row[3] == "pressure\n"  # a section of no known kind is not read
            given_up = lost or (row[0] in ("syntax", "node-number") and different[0] < 26)
            if len(different) == 1 and different[0] not in wanted and not broken and not given_up:
                wanted[different[0]] = (row[0], changed[different[0]])
        text = "\n".join(wanted[i][1] if i in wanted else line for i, line in enumerate(lines))
        found = {(f["code"], f["line"]) for f in checker.findings(text)}
        score.equal(found, {(code, i + 1) for i, (code, _) in wanted.items()}, base,
                    *(f"\n    {i + 1}: {line}" for i, (_, line) in wanted.items()))


def check_two_hundred(checker, score):
    nodes = "".join(f"    {i}  {i},5 0\n" for i in range(1, 201))
    text = BASES["springs"].replace("    1  0 0\n    2  4 0\n    3  8 0\n", nodes)
    found = checker.findings(text)
    score.equal(len([f for f in found if f["code"] == "number-cut"]), 200, "two hundred commas")
    score.equal({f["code"] for f in found}, {"number-cut"}, "two hundred commas")


def main():
    checker, score = Checker(sys.argv[1]), Score()
    check_bases(checker, score)
    check_single(checker, score)
    check_syntax_only(checker, score)
    check_many(checker, score)
    check_two_hundred(checker, score)
    score.end()


if __name__ == "__main__":
    main()

"""check_codes.py KESTOL-CHECK ROOT: every code has a paragraph, a deck that shows it and nothing else, its
cure, and a near miss that does not show it; --list-codes and --explain know the same codes."""
import pathlib
import re
import sys

from checker import Checker, Score, brief

# No deck is known that shows it; a unit test does.
WITHOUT_DECKS = {"out-of-balance"}


def main():
    checker, score = Checker(sys.argv[1]), Score()
    root = pathlib.Path(sys.argv[2])
    decks = root / "tests/check/decks"
    listed = {line.split()[0]: line.split()[1]
              for line in checker.run("--list-codes").stdout.splitlines()}
    page = (root / "docs/check-codes.md").read_text()
    headings = re.findall(r"^## (\S+)$", page, re.MULTILINE)
    score.equal(sorted(headings), sorted(listed), "headings of the page")
    names = {p.name for p in decks.glob("*.dat")}
    score.equal(names, {f"{code}-{kind}.dat" for code in listed for kind in ("bad", "cured", "near")
                        if code not in WITHOUT_DECKS}, "decks")
    for code, severity in listed.items():
        explained = checker.run("--explain", code).stdout
        score.expect(explained.startswith(code + "\n") and len(explained) > 80, "--explain", code)
        section = page[page.index(f"\n## {code}\n"):].split("\n## ")[1]
        score.expect(f"*{severity.capitalize()}.*" in section, code, "says", severity)
        if code in WITHOUT_DECKS:
            continue
        bad = checker.json(decks / f"{code}-bad.dat")["findings"]
        score.equal([f["code"] for f in bad], [code], code, "bad", brief(bad))
        cured = checker.json(decks / f"{code}-cured.dat")["findings"]
        score.equal(brief(cured), [], code, "cured")
        near = checker.json(decks / f"{code}-near.dat")["findings"]
        score.expect(code not in [f["code"] for f in near], code, "near", brief(near))
        score.expect(not any(f["severity"] == "error" for f in near), code, "near", brief(near))
        left = checker.json(decks / f"{code}-bad.dat", "--disable", code)["findings"]
        score.expect(code not in [f["code"] for f in left], code, "--disable", brief(left))
    score.end()


if __name__ == "__main__":
    main()

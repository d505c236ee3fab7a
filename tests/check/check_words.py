"""check_words.py KESTOL-CHECK ROOT: the words of every finding, of the tables and of the program, to the letter."""
import pathlib
import sys

import words_of_lists
import words_of_loads
import words_of_materials
import words_of_model
import words_of_motions
import words_of_records
import words_of_solutions
from bases import BASES
from checker import Checker, Score
from words import check_rows, place_of
from words_of_program import CODES, REFUSED, TABLES, USAGE

ROOMS = (words_of_records, words_of_lists, words_of_materials, words_of_model, words_of_loads, words_of_motions,
         words_of_solutions)


def check_findings(checker, score):
    for room in ROOMS:
        check_rows(checker, score, room.ROWS)
    check_rows(checker, score, words_of_loads.UNSOLVED, "--no-solve")
    check_rows(checker, score, words_of_motions.SHARED, "--disable", "hinge-shared,disconnected")
    check_rows(checker, score, words_of_motions.ALL, "--mechanism", "10")
    check_rows(checker, score, words_of_motions.LIMITED, "--mechanism", "1")
    check_rows(checker, score, words_of_motions.UNEXPLAINED, "--mechanism", "0")
    check_rows(checker, score, [(BASES["portal"],)])


def check_documents(checker, score):
    """The same words in JSON, with all lines of a finding in one text."""
    for deck, *findings in words_of_lists.HINTS + words_of_motions.MECHANISMS:
        found = checker.findings(deck, "--no-condition")
        score.equal(len(found), len(findings), "in JSON", found)
        for finding, (mark, words, *more) in zip(found, findings):
            severity, words = words.split(": ", 1)
            words, code = words[:-1].rsplit(" [", 1)
            line, column, length = place_of(deck, mark) if mark else (0, 0, 0)
            score.equal((finding["severity"], finding["code"], finding["text"]),
                        (severity, code, "\n".join([words, *more])), "in JSON")
            score.equal((finding["line"], finding["column"], finding["endColumn"]), (line, column, column + length),
                        words, "in JSON")


def check_program(checker, score):
    usage = checker.run("--help")
    score.equal((usage.returncode, usage.stdout.split()), (0, USAGE.split()), "--help")
    score.equal(checker.run("--list-codes").stdout, CODES, "--list-codes")
    for arguments, words in REFUSED:
        run = checker.run(*arguments)
        score.equal((run.returncode, run.stdout, run.stderr),
                    (2, "", f"kestol-check: {words}; try kestol-check --help\n"),
                    arguments)


def check_explanations(checker, score, root):
    """The paragraphs of the page, as they stand there."""
    page = pathlib.Path(root, "docs/check-codes.md").read_text()
    for code in (line.split()[0] for line in CODES.splitlines()):
        section = page.split(f"\n## {code}\n")[1].split("\n## ")[0].rstrip("\n")
        score.equal(checker.run("--explain", code).stdout, f"{code}\n{section}\n", code)


class Table:
    """The rows of a table: a name, then values that end in the same columns."""

    def __init__(self, score, columns):
        self.score = score
        self.title, self.width, self.digits = (14, 11, 5) if len(columns) > 3 else (26, 14, 8)
        self.heading = " " * self.title + "".join(name.rjust(self.width) for name in columns)

    def check_row(self, line, name, values):
        fields = [line[i:i + self.width] for i in range(self.title, len(line), self.width)]
        self.score.equal((line[:self.title], len(fields)), (name.ljust(self.title), len(values)), line)
        scale = max(1.0, *map(abs, values))
        for field, value in zip(fields, values):
            shown = f"{value:.{self.digits}g}".rjust(self.width)
            noise = value == 0 and abs(float(field)) <= 1e-9 * scale and len(field) == self.width
            self.score.expect(field == shown or noise, line, "wanted", value)


def check_tables(checker, score):
    for deck, columns, reactions, equilibrium in TABLES:
        run = checker.run("--reactions", "--equilibrium", checker.write(deck))
        table, lines = Table(score, columns), run.stdout.split("\n")
        titles = {0: "TRUE REACTIONS (K u - F)", 1: table.heading, len(reactions) + 2: "",
                  len(reactions) + 3: "EQUILIBRIUM about the origin", len(reactions) + 4: table.heading}
        rows = {2 + i: row for i, row in enumerate(reactions)}
        rows |= {len(reactions) + 5 + i: row for i, row in enumerate(equilibrium)}
        rows[len(lines) - 2] = ("relative error", *(0 for _ in columns))
        score.equal(sorted(titles | rows), list(range(len(lines) - 1)), run.stdout, run.stderr)
        for i, line in enumerate(lines[:-1]):
            if i in rows:
                table.check_row(line, rows[i][0], rows[i][1:])
            else:
                score.equal(line, titles.get(i))


def check_mid_sides(checker, score):
    """Supports that the conversion makes half-way between others, and their share of 1000."""
    run = checker.run("--reactions", checker.write(BASES["plate"]))
    rows = [(line[:14].rstrip(), float(line[36:47])) for line in run.stdout.split("\n")[2:] if line]
    edges = ["1-2", "1-4", "2-3", "3-6", "4-7", "6-9", "7-8", "8-9"]
    wanted = [f"node {node}" for node in (1, 2, 3, 4, 6, 7, 8, 9)] + [f"between {edge}" for edge in edges]
    score.equal(sorted(name for name, _ in rows), sorted(wanted), "mid-sides")
    score.expect(abs(sum(force for _, force in rows) - 1000) < 0.1, "of mid-sides", rows)


def main():
    checker, score = Checker(sys.argv[1]), Score()
    check_findings(checker, score)
    check_documents(checker, score)
    check_program(checker, score)
    check_explanations(checker, score, sys.argv[2])
    check_tables(checker, score)
    check_mid_sides(checker, score)
    score.end()


if __name__ == "__main__":
    main()

"""What kestol-check prints of a deck, to the letter: rows of decks with their findings.

A row is (deck, finding, ...) with all findings of the deck in their order. A finding is (mark, words, further
lines ...): the mark is a piece of the deck that stands there once, with the word between brackets under which the
caret stands, or None for a finding without a place; the words are the line behind the place; "≈2e12" in them stands
for a number that is known to a percent.
"""
import re


def edit(deck, *edits):
    """The deck with each `old, new` of the edits put in, in turn, where `old` stands first."""
    for old, new in zip(edits[::2], edits[1::2], strict=True):
        if old not in deck:
            raise ValueError(f"{old!r} does not stand in the deck")
        deck = deck.replace(old, new, 1)
    return deck


def place_of(deck, mark):
    """Line and column of the word between the brackets, from 1, and its length."""
    piece = mark.replace("[", "").replace("]", "")
    if deck.count(piece) != 1:
        raise ValueError(f"{piece!r} stands {deck.count(piece)} times in the deck")
    begin = deck.index(piece) + mark.index("[")
    line_begin = deck.rfind("\n", 0, begin) + 1
    return deck.count("\n", 0, begin) + 1, begin - line_begin + 1, mark.index("]") - mark.index("[") - 1


def finding_text(path, deck, mark, words, *more):
    """The line of a finding, the line of the deck with its caret, and the further lines."""
    text = f"{path}: {words}\n"
    if mark is not None:
        line, column, length = place_of(deck, mark)
        source = deck.split("\n")[line - 1]
        text = f"{path}:{line}:{column}: {words}\n{line:5} | {source}\n"
        text += f"      | {' ' * (column - 1)}^{'~' * (length - 1)}\n"
    return text + "".join(f"  {line}\n" for line in more)


def summary(path, findings):
    counts = [(sum(words.startswith(kind) for _, words, *_ in findings), kind) for kind in ("error", "warning")]
    said = [f"{count} {kind}{'s' if count > 1 else ''}" for count, kind in counts if count]
    return f"{path}: {', '.join(said) or 'nothing found'}\n"


def alike(found, wanted):
    """Whether the texts are the same but for numbers that are known to a percent."""
    parts = re.split("≈([-+.0-9e]+)", wanted)
    match = re.fullmatch("([-+.0-9e]+)".join(map(re.escape, parts[::2])), found)
    numbers = [float(number) for number in parts[1::2]]
    return match is not None and all(abs(float(f) - n) <= 0.01 * abs(n) for f, n in zip(match.groups(), numbers))


def check_rows(checker, score, rows, *options):
    """The whole of standard error for each row, and the exit status."""
    for deck, *findings in rows:
        path = checker.write(deck)
        wanted = "".join(finding_text(path, deck, *finding) for finding in findings) + summary(path, findings)
        run = checker.run(*options, path)
        score.expect(alike(run.stderr, wanted), f"\n  found\n{run.stderr}  wanted\n{wanted}")
        score.equal(run.returncode, int(any(words.startswith("error") for _, words, *_ in findings)), wanted)

#!/usr/bin/env python3
"""Cuts and bends one good deck. check_deck.py [--sanitized] PROGRAM DECK

The deck's constraints stand last, so that it cannot be solved without its very last "end": each
deck that is cut before it must be refused."""
import argparse
import pathlib
import random
import re

from kestol_run import Checker


def cut_decks(deck):
    """The deck cut in the middle and at the end of every word up to its last but one."""
    ends = []
    for word in list(re.finditer(rb"\S+", deck))[:-1]:
        ends += {(word.start() + word.end()) // 2, word.end()}
    return [deck[:end] for end in sorted(ends) if b"end" not in last_words(deck[:end])]


def last_words(text):
    """What stands behind the last line that begins the constraints; nothing before it."""
    return text.rpartition(b"\nconstraints")[2] if b"\nconstraints" in text else b""


def bent_decks(deck, count):
    """Decks with one word replaced, doubled, dropped or swapped with another; the same ones every
    time."""
    strange = [b"0", b"-1", b"1e999", b"-1e999", b"nan", b"inf", b"1e-320", b"2147483647",
               b"2147483648", b"-2147483648", b"99999999999999999999", b"0x10", b"end", b"#", b"=",
               b":", b"mesh", b"\0", b"\xff\xfe", b"%s%n", b"1" * 400, b"E=", b"units=", b"units"]
    chance = random.Random(1)
    spans = [m.span() for m in re.finditer(rb"\S+", deck)]
    for _ in range(count):
        start, end = chance.choice(spans)
        other_start, other_end = chance.choice(spans)
        words = {"replace": chance.choice(strange), "drop": b"",
                 "double": deck[start:end] + b" " + deck[start:end],
                 "copy": deck[other_start:other_end]}
        what = chance.choice(sorted(words))
        yield f"{what} at byte {start}: {words[what][:40]}", deck[:start] + words[what] + deck[end:]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--sanitized", action="store_true")
    parser.add_argument("program")
    parser.add_argument("deck", type=pathlib.Path)
    arguments = parser.parse_args()
    checker = Checker(arguments.program, arguments.sanitized)
    deck = arguments.deck.read_bytes()

    whole = checker.expect_success(deck, "the whole deck")
    for variant, text in {
            "carriage returns": deck.replace(b"\n", b"\r\n"),
            "tabs": deck.replace(b" ", b"\t"),
            "no final line end": deck.rstrip(b"\n"),
            "a byte order mark": b"\xef\xbb\xbf" + deck}.items():
        checker.expect(checker.expect_success(text, variant) == whole,
                       f"{variant}: other results than the plain deck")

    for cut in cut_decks(deck):
        checker.expect_refusal(cut, f"cut after {cut[-40:]}")
    for what, bent in bent_decks(deck, 60 if arguments.sanitized else 300):
        checker.expect_orderly_end(bent, what)
    checker.finish()


if __name__ == "__main__":
    main()

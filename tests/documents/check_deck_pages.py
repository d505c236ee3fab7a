#!/usr/bin/env python3
"""Every keyword, section and material key that the readers know stands in kestol(5) and in
docs/input-format.md, as a word of its own: check_deck_pages.py SOURCE"""
import pathlib
import re
import sys


def table(file, head):
    """Names of the rows {"name", ...} of a table."""
    rows = file.read_text().split(head, 1)[1].split("};", 1)[0]
    return re.findall(r'\{"(\w+)"', rows)


def main():
    source = pathlib.Path(sys.argv[1])
    words = table(source / "input" / "ProjectReader.cc", "kKeywords[] = {")
    words += table(source / "input" / "MaterialReader.cc", "kKeyRules[] = {")
    # Of the two cases of a first letter one is enough.
    words = [word for word in words if len(word) > 1 or word.isupper() or word == "t"]
    missing = 0
    for page in ("docs/man/kestol.5", "docs/input-format.md"):
        text = re.sub(r"\\f.|\\-", " ", (source / page).read_text())
        for word in words:
            if not re.search(rf"(?<!\w){word}\d?(?!\w)", text):
                print(f"{page} lacks {word}")
                missing += 1
    print(f"{len(words)} words")
    return 1 if missing or len(words) < 30 else 0


if __name__ == "__main__":
    sys.exit(main())

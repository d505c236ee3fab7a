#!/usr/bin/env python3
"""Follows the links of all Markdown pages under a folder:

    script/check_links.py [--without FOLDER] [ROOT]

Each link to a file must lead to one under the root, each anchor to a heading. Prints the broken ones
and exits with 1. Builds, hidden folders and the pages with faults of its own test are left out.
"""
import argparse
import pathlib
import re
import sys

LINK = re.compile(r"\]\(([^)\s]+)\)")
CODE = re.compile(r"`[^`]*`")
OTHER_FOLDERS = {"build", "node_modules"}


def pages(root, without):
    for path in sorted(root.rglob("*.md")):
        folders = path.relative_to(root).parts[:-1]
        if any(name.startswith(".") or name in OTHER_FOLDERS for name in folders):
            continue
        if root / without not in path.parents:
            yield path


def anchors(page):
    """The names under which the headings of a page can be reached."""
    taken = {}
    for heading in re.findall(r"^#+ (.*)$", page.read_text(), re.M):
        name = re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")
        count = taken[name] = taken.get(name, -1) + 1
        yield f"{name}-{count}" if count else name


def broken(root, page):
    for number, line in enumerate(page.read_text().splitlines(), 1):
        for link in LINK.findall(CODE.sub("", line)):
            if re.match(r"\w+:", link):
                continue
            name, _, anchor = link.partition("#")
            target = (page.parent / name).resolve() if name else page
            if not target.exists() or root not in (target, *target.parents):
                yield f"{page.relative_to(root)}:{number}: {link} leads nowhere"
            elif anchor and anchor not in anchors(target):
                yield f"{page.relative_to(root)}:{number}: {link} names no heading"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--without", default="tests/documents")
    parser.add_argument("root", nargs="?", type=pathlib.Path,
                        default=pathlib.Path(__file__).parent.parent)
    arguments = parser.parse_args()
    root = arguments.root.resolve()
    found = list(pages(root, arguments.without))
    lines = [line for page in found for line in broken(root, page)]
    print("\n".join(lines) or f"the links of {len(found)} pages lead somewhere")
    return 1 if lines or not found else 0


if __name__ == "__main__":
    sys.exit(main())

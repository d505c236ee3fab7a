#!/usr/bin/env python3
"""Everything is where a user of an installed kestol looks for it:

    check_installed.py SOURCE PREFIX PROGRAM...

Each program in bin/ with its manual page and its completion, the page of the deck, all documents and
examples of the source, and the Python module where it is built (the word "python" among the programs).
"""
import pathlib
import sys


def expected(source, programs):
    yield "share/man/man5/kestol.5.gz"
    for name in programs:
        if name == "python":
            yield "lib/python3/dist-packages/kestol/__init__.py"
            continue
        yield f"bin/{name}"
        yield f"share/man/man1/{name}.1.gz"
        yield f"share/bash-completion/completions/{name}"
    for folder, endings in (("docs", {".md", ".svg", ".png"}),
                            ("examples", {".dat", ".toml", ".geo", ".md"})):
        for path in sorted((source / folder).rglob("*")):
            if path.suffix in endings:
                yield f"share/doc/kestol/{path.relative_to(source)}"
    yield "share/doc/kestol/README.md"


def main():
    source, prefix = map(pathlib.Path, sys.argv[1:3])
    names = list(expected(source, sys.argv[3:]))
    missing = [name for name in names if not (prefix / name).is_file()]
    folders = {path.name for path in prefix.iterdir()}
    missing += [f"unexpected: {name}" for name in sorted(folders - {"bin", "include", "lib", "share"})]
    for name in missing:
        print(name)
    print(f"{len(names)} files")
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())

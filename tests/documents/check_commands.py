#!/usr/bin/env python3
"""Runs the commands of pages as they are written and compares what they print with what is shown:

    check_commands.py SOURCE PROGRAM... -- PAGE...

A command is a line of a code block that begins with "$ "; the lines below it, up to the next command
or the end of the block, are what it prints. A line "..." stands for any lines. Numbers may differ in
their last digits, and by rounding beside the largest one of the command. A command may fail when an error
is shown. A page runs from its top to
its end in one copy of examples/, or of the folder under it that a comment of the page names:
<!-- commands: in examples/import -->. A command of kestol or a companion without a "$" is an error.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

NUMBER = re.compile(r"(?<![\w.])[-+]?(?:\d+\.?\d*|\.\d+)(?:[eE][-+]?\d+)?(?![\w.]*\w)")
RELATIVE, ROUNDING = 2e-5, 1e-9


def blocks(text):
    """(line number of the first line, lines) of each code block, fenced or indented."""
    found = []
    fence = inside = False
    for number, line in enumerate(text.splitlines(), 1):
        if line.startswith("```"):
            fence = not fence
            inside = False
            continue
        code = line if fence else line[4:] if line.startswith("    ") else "" if inside and not line else None
        if code is None:
            inside = False
        elif inside:
            found[-1][1].append(code)
        else:
            found.append((number, [code]))
            inside = True
    return found


def commands(text):
    """(line number, command, lines shown)."""
    for first, lines in blocks(text):
        current = None
        for number, line in enumerate(lines, first):
            if line.startswith("$ "):
                if current:
                    yield current
                current = (number, line[2:], [])
            elif current:
                current[2].append(line)
        if current:
            yield current


def unmarked(text):
    """Lines of code that call a companion or the solver on something, without a "$"."""
    for first, lines in blocks(text):
        if lines[0].startswith("#!"):
            continue
        for number, line in enumerate(lines, first):
            if re.match(r"(kestol(-[a-z]+)?|gmsh|mpirun) ", line) and not re.search(r"\[|[A-Z]{4}", line):
                yield number, line


def same_line(shown, printed, largest):
    if shown.rstrip() == printed.rstrip():
        return True
    words = [NUMBER.sub("#", line).split() for line in (shown, printed)]
    if words[0] != words[1]:
        return False
    return all(abs(a - b) <= max(RELATIVE * max(abs(a), abs(b)), ROUNDING * largest)
               for a, b in zip(*(map(float, NUMBER.findall(line)) for line in (shown, printed))))


def same(shown, printed):
    """Whether the lines agree; "..." takes as many lines as it needs."""
    numbers = [abs(float(number)) for line in printed for number in NUMBER.findall(line)]
    largest = max(numbers, default=0.0)

    def agree(i, j):
        if i == len(shown):
            return j == len(printed)
        if shown[i].strip() == "...":
            return any(agree(i + 1, k) for k in range(j, len(printed) + 1))
        return j < len(printed) and same_line(shown[i], printed[j], largest) and agree(i + 1, j + 1)

    return agree(0, 0)


def run(command, folder, path):
    environment = {**os.environ, "PATH": f"{path}:/usr/bin:/bin", "LC_ALL": "C.UTF-8",
                   "PYTHONDONTWRITEBYTECODE": "1", "NO_COLOR": "1"}
    done = subprocess.run(["bash", "-o", "pipefail", "-c", command], cwd=folder, env=environment,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, check=False, timeout=300)
    return done.returncode, done.stdout.splitlines()


def faults(page, source, path, count):
    text = page.read_text()
    name = page.name
    for number, line in unmarked(text):
        yield f"{name}:{number}: a command without \"$\": {line}"
    with tempfile.TemporaryDirectory() as scratch:
        place = re.search(r"<!-- commands: in (examples[\w/-]*) -->", text)
        folder = pathlib.Path(scratch) / "work"
        shutil.copytree(source / (place[1] if place else "examples"), folder)
        for number, command, shown in commands(text):
            count[0] += 1
            status, printed = run(command, folder, path)
            for lines in (shown, printed):
                while lines and not lines[-1].strip():
                    lines.pop()
            if status != 0 and not any("error" in line for line in shown):
                yield f"{name}:{number}: $ {command}\nexit status {status}"
            elif not same(shown, printed):
                yield "\n".join([f"{name}:{number}: $ {command}", "shown:", *shown, "printed:", *printed])


def main():
    split = sys.argv.index("--")
    source, *programs = (pathlib.Path(word).resolve() for word in sys.argv[1:split])
    count, found = [0], []
    with tempfile.TemporaryDirectory() as path:
        for program in programs:
            os.symlink(program, pathlib.Path(path) / program.name)
        for page in sys.argv[split + 1:]:
            found += faults(pathlib.Path(page), source, path, count)
    for text in found:
        print(text)
    print(f"{count[0]} commands")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

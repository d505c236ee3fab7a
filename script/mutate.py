#!/usr/bin/env python3
"""Flips one constant, sign or comparison at a time and reports the flips that no test notices.

    script/mutate.py [--count N] [--seed S] [--only PATH-PREFIX] [--minutes M]

Works on a copy of the committed tree in build/mutation; the working tree is not touched. Each mutant
is built and the tests are run until the first failure. Survivors are listed with their line; a
survivor either gets a test, or shows that the line does not matter.
"""
import argparse
import pathlib
import random
import re
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
COPY = ROOT / "build" / "mutation" / "tree"
BUILD = ROOT / "build" / "mutation" / "build"
FOLDERS = ["algebra", "analysis", "model"]

# (what to look for, what to put there)
FLIPS = [
    (re.compile(r" \+ "), " - "),
    (re.compile(r" - "), " + "),
    (re.compile(r" \+= "), " -= "),
    (re.compile(r" -= "), " += "),
    (re.compile(r" \* "), " / "),
    (re.compile(r" / "), " * "),
    (re.compile(r" < "), " <= "),
    (re.compile(r" <= "), " < "),
    (re.compile(r" > "), " >= "),
    (re.compile(r" >= "), " > "),
    (re.compile(r" == "), " != "),
    (re.compile(r" != "), " == "),
    (re.compile(r" && "), " || "),
    (re.compile(r" \|\| "), " && "),
    (re.compile(r"(?<![\w.])-(?=[\w(])"), ""),
    (re.compile(r"(?<![\w.])0\.5(?![\w.])"), "0.6"),
    (re.compile(r"(?<![\w.])1\.0(?![\w.])"), "2.0"),
    (re.compile(r"(?<![\w.])0\.0(?![\w.])"), "1.0"),
    (re.compile(r"(?<![\w.])1(?![\w.'])"), "2"),
    (re.compile(r"(?<![\w.])2(?![\w.'])"), "3"),
    (re.compile(r"(?<![\w.])3(?![\w.'])"), "4"),
    (re.compile(r"(?<![\w.])6(?![\w.'])"), "5"),
]
SKIP = re.compile(r"^\s*(//|#|assert\(|static_assert|template|using|case )")


def sites():
    """All places where a flip applies: (file, line index, start, end, replacement)."""
    for folder in FOLDERS:
        for path in sorted((COPY / folder).glob("*.cc")):
            for index, line in enumerate(path.read_text().splitlines()):
                code = line.split("//")[0]
                if SKIP.match(line) or '"' in code:
                    continue
                for pattern, replacement in FLIPS:
                    for match in pattern.finditer(code):
                        yield path, index, match.start(), match.end(), replacement


def run(command, timeout):
    try:
        return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=timeout).returncode
    except subprocess.TimeoutExpired:
        return -1


def build():
    return run(["cmake", "--build", str(BUILD), "-j", "2"], 600) == 0


def tests_notice():
    return run(["ctest", "--test-dir", str(BUILD), "-j", "2", "--stop-on-failure", "--timeout", "60"],
               900) != 0


def prepare():
    if COPY.exists():
        shutil.rmtree(COPY)
    COPY.mkdir(parents=True)
    archive = subprocess.run(["git", "-C", str(ROOT), "archive", "HEAD"], check=True,
                             stdout=subprocess.PIPE).stdout
    subprocess.run(["tar", "-x", "-C", str(COPY)], input=archive, check=True)
    # One shared library, so that a mutant is one compilation and one link.
    subprocess.run(["cmake", "-G", "Ninja", "-S", str(COPY), "-B", str(BUILD),
                    "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS=-O1 -fPIC",
                    "-DBUILD_SHARED_LIBS=ON", "-DCMAKE_ENABLE_EXPORTS=ON"],
                   check=True, stdout=subprocess.DEVNULL)
    if not build() or tests_notice():
        sys.exit("the tree does not pass its tests without a mutation")


def try_mutant(site):
    path, index, start, end, replacement = site
    text = path.read_text()
    lines = text.splitlines(keepends=True)
    lines[index] = lines[index][:start] + replacement + lines[index][end:]
    path.write_text("".join(lines))
    try:
        if not build():
            return "does not build"
        return "noticed" if tests_notice() else "SURVIVED"
    finally:
        path.write_text(text)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--only", default="")
    parser.add_argument("--minutes", type=float, default=600)
    arguments = parser.parse_args()
    prepare()
    chosen = [s for s in sites() if str(s[0].relative_to(COPY)).startswith(arguments.only)]
    random.Random(arguments.seed).shuffle(chosen)
    tally = {"noticed": 0, "SURVIVED": 0, "does not build": 0}
    stop = time.monotonic() + 60 * arguments.minutes
    for site in chosen[:arguments.count]:
        if time.monotonic() > stop:
            break
        result = try_mutant(site)
        tally[result] += 1
        path, index, start, end, replacement = site
        if result == "SURVIVED":
            line = path.read_text().splitlines()[index]
            print(f"{path.relative_to(COPY)}:{index + 1}: {line[start:end]!r} -> {replacement!r}: "
                  f"{line.strip()}", flush=True)
    tried = tally["noticed"] + tally["SURVIVED"]
    print(f"{tried} mutants, {tally['noticed']} noticed, {tally['SURVIVED']} survived "
          f"({tally['does not build']} more did not build)")


if __name__ == "__main__":
    main()

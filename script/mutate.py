#!/usr/bin/env python3
"""Flips one constant, sign or comparison at a time and reports the flips that no test notices.

    script/mutate.py [--count N] [--seed S] [--only PATH-PREFIX] [--minutes M] [--jobs J] [--near]
                     [--python | --page]
    script/mutate.py --again SURVIVORS [--sanitize]

Works on copies of the committed tree in build/mutation; the working tree is not touched. Each mutant
is built and the tests are run until the first failure: the test programs, each as one process and in
seconds, those of its folder that ctest runs, and behind them the others of ctest. With --near the last
are left out: more mutants in the same time, and some survive that a test elsewhere would notice.
Survivors are listed with their line; a survivor either gets a test, or shows that the line does not
matter. --again tries those of an earlier list once more, after tests were added; --sanitize builds
with the sanitizers, which see what is only undefined; --python takes the Python sources in place of
the C++ ones, --page those of kestol-view's page: they build what their tests run, and try each mutant
on the tests of its own folder.
"""
import argparse
import collections
import os
import pathlib
import queue
import random
import re
import shutil
import subprocess
import sys
import threading
import time
import tokenize

import check_includes

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"

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
SKIP = re.compile(r"^\s*(//|#|assert\(|static_assert|template|using|case |from |import )")
# What Python writes in words.
PYTHON_FLIPS = [
    (re.compile(r" and "), " or "),
    (re.compile(r" or "), " and "),
    (re.compile(r"\bnot (?!in\b)"), ""),
    (re.compile(r" not in "), " in "),
    (re.compile(r"\bTrue\b"), "False"),
    (re.compile(r"\bFalse\b"), "True"),
]
# What the script of a page writes in its own way; its numbers stand in strings of shaders too.
PAGE_FLIPS = [
    (re.compile(r" === "), " !== "),
    (re.compile(r" !== "), " === "),
    (re.compile(r" \?\? "), " && "),
    (re.compile(r"!(?=[\w(])"), ""),
    (re.compile(r"\btrue\b"), "false"),
    (re.compile(r"\bfalse\b"), "true"),
    (re.compile(r"\bMath\.max\b"), "Math.min"),
    (re.compile(r"\bMath\.min\b"), "Math.max"),
]
# One shared library, so that a mutant is one compilation and one link.
QUICK_TO_LINK = ["-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS=-O1 -fPIC", "-DBUILD_SHARED_LIBS=ON",
                 "-DCMAKE_ENABLE_EXPORTS=ON", "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON"]
# The tests of ctest that look at a folder first; the first row that fits.
NEAR = [
    ("kestol/combine/", r"^combine\.|^python\.combining"),
    ("kestol/findings/", r"^check\."),
    ("kestol/mechanisms/", r"^check\."),
    ("kestol/", r"^check\.|^export\.|^combine\.|^python\."),
    ("programs/check/", r"^check\."),
    ("programs/combine/", r"^combine\."),
    ("programs/common/", r"^export\.|^check\.|^combine\."),
    ("programs/export/", r"^export\."),
    ("programs/mpi/", r"^mpi\."),
    ("programs/python/", r"^python\."),
    ("programs/view/page/", r"^view_(pictures|words|controls|quantities|picking|page|program|values)$"),
    ("programs/view/", r"^view_"),
    ("direct/", r"^export\.|^check\."),
    ("input/", r"^check\.|^case\.|^robustness\."),
    ("results/", r"^export\.|^case\."),
    ("import/", r"^import\."),
    ("python/", r"^python\."),
    ("", r"^case\."),
]


class Tree:
    """A copy of the committed tree with its build; one mutant at a time."""

    def __init__(self, number, sanitize, near, language):
        self.near_only = near
        self.language = language
        self.source = WORK / f"tree{number}"
        # Where a build lies in a working tree, so that a compiler cache answers.
        self.build_folder = self.source / "build" / "mutant"
        scratch = WORK / f"tmp{number}"
        scratch.mkdir(parents=True, exist_ok=True)
        # Trees run beside each other; the files of their tests must not meet.
        self.environment = {**os.environ, "TMPDIR": str(scratch), "TEST_TMPDIR": str(scratch)}
        self.source.mkdir(parents=True, exist_ok=True)
        for old in self.source.iterdir():
            if old.is_dir() and old.name != "build":
                shutil.rmtree(old)
            elif old.is_file():
                old.unlink()
        archive = subprocess.run(["git", "-C", str(ROOT), "archive", "HEAD"], check=True,
                                 stdout=subprocess.PIPE).stdout
        subprocess.run(["tar", "-x", "-C", str(self.source)], input=archive, check=True)
        kind = ["-G", "Ninja", *QUICK_TO_LINK] if language is CXX else ["--preset", "release"]
        subprocess.run(["cmake", *kind, "-S", str(self.source), "-B", str(self.build_folder),
                        f"-DKESTOL_SANITIZE={'ON' if sanitize else 'OFF'}"],
                       check=True, stdout=subprocess.DEVNULL)
        if not self.build():
            sys.exit("the tree does not build")
        # The quickest first.
        self.programs = sorted((p for p in self.build_folder.glob("tests/**/*_tests")
                                if p.is_file()), key=lambda p: "faults" in p.name)
        # The others are the same.
        if number == 0 and any(map(self.tests_notice, language.folders or [""])):
            sys.exit("the tree does not pass its tests without a mutation")

    def run(self, command, timeout):
        """Whether the command ends in time and with status 0."""
        try:
            return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                  timeout=timeout, env=self.environment,
                                  cwd=self.build_folder).returncode == 0
        except subprocess.TimeoutExpired:
            return False

    def build(self):
        return self.run(["cmake", "--build", ".", "--target", *self.language.targets], 1200)

    def takes(self, name):
        """Whether the build takes over a changed source."""
        if name.startswith("import/"):
            return True  # runs where it lies
        if name.endswith(".py"):
            shutil.copyfile(self.source / name, self.build_folder / name)
            return True
        return self.build()

    def tests_notice(self, name):
        near = next(tests for prefix, tests in NEAR if name.startswith(prefix))
        ctest = ["ctest", "--stop-on-failure", "--timeout", "120"]
        if self.language is not CXX:
            return not self.run([*ctest, "-R", near], 600)  # no other test runs them
        for program in self.programs:
            if not self.run([str(program), "--gtest_fail_fast"], 60):
                return True
        if not self.run([*ctest, "-R", near], 600):
            return True
        return not self.near_only and not self.run([*ctest, "-E", rf"_tests\.|{near}"], 900)

    def try_mutant(self, site):
        name, index, start, end, replacement = site
        path = self.source / name
        text = path.read_text()
        lines = text.splitlines(keepends=True)
        lines[index] = lines[index][:start] + replacement + lines[index][end:]
        path.write_text("".join(lines))
        try:
            if not self.takes(name):
                return "does not build"
            return "noticed" if self.tests_notice(name) else "SURVIVED"
        finally:
            path.write_text(text)
            if name.endswith(".py"):
                self.takes(name)


def code_of_python(path):
    """The lines with what stands in strings and comments blotted out: what they say no test notices."""
    lines = path.read_text().splitlines()
    with tokenize.open(path) as file:
        tokens = [t for t in tokenize.generate_tokens(file.readline)
                  if t.type in (tokenize.STRING, tokenize.COMMENT)]
    for token in tokens:
        (first, start), (last, end) = token.start, token.end
        for row in range(first, last + 1):
            line = lines[row - 1]
            left = start if row == first else 0
            right = end if row == last else len(line)
            lines[row - 1] = line[:left] + "_" * (right - left) + line[right:]
    return lines


def code_of_cxx(path):
    """The lines without comments; of those with a string nothing."""
    codes = (line.split("//")[0] for line in path.read_text().splitlines())
    return ["" if '"' in code else code for code in codes]


def code_of_page(path):
    """The lines with their comments, which hold types, blotted out."""
    return re.sub(r"/\*.*?\*/|//[^\n]*", lambda found: re.sub(r"[^\n]", "_", found[0]),
                  path.read_text(), flags=re.DOTALL).splitlines()


# Where sources lie (C++: wherever CMake names them), what can be flipped in their code, and what must
# be built for their tests.
Language = collections.namedtuple("Language", "folders files code flips targets")
CXX = Language(None, "*.cc", code_of_cxx, FLIPS, ["all"])
PYTHON = Language(["import/kestol_import", "python/kestol"], "*.py", code_of_python,
                  FLIPS + PYTHON_FLIPS, ["kestol", "kestol-check", "kestol-export", "kestol_python"])
PAGE = Language(["programs/view/page/src"], "*.js", code_of_page, FLIPS + PAGE_FLIPS,
                ["kestol-view", "kestol-check", "kestol-combine", "kestol-export", "kestol_view_tests"])


def sites(source, language):
    """All places where a flip applies: (file, line index, start, end, replacement)."""
    folders = language.folders or check_includes.folders(source)
    for path in sorted({p for folder in folders for p in (source / folder).rglob(language.files)}):
        for index, code in enumerate(language.code(path)):
            if SKIP.match(code):
                continue
            for pattern, replacement in language.flips:
                for match in pattern.finditer(code):
                    yield (str(path.relative_to(source)), index, match.start(), match.end(),
                           replacement)


def listed(file):
    """The (file, line index, start, replacement) of an earlier run's survivors."""
    for line in file.read_text().splitlines():
        if match := re.match(r"(\S+):(\d+):(\d+): '.*?' -> '(.*?)': ", line):
            yield match[1], int(match[2]) - 1, int(match[3]) - 1, match[4]


def work(tree, waiting, tally, stop):
    while time.monotonic() < stop:
        try:
            site = waiting.get_nowait()
        except queue.Empty:
            return
        result = tree.try_mutant(site)
        tally[result] += 1
        name, index, start, end, replacement = site
        if result == "SURVIVED":
            line = (tree.source / name).read_text().splitlines()[index]
            print(f"{name}:{index + 1}:{start + 1}: {line[start:end]!r} -> {replacement!r}: "
                  f"{line.strip()}", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--only", default="")
    parser.add_argument("--minutes", type=float, default=600)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--again", type=pathlib.Path)
    parser.add_argument("--sanitize", action="store_true")
    parser.add_argument("--near", action="store_true")
    languages = parser.add_mutually_exclusive_group()
    for option, language in (("--python", PYTHON), ("--page", PAGE)):
        languages.add_argument(option, dest="language", action="store_const", const=language,
                               default=CXX)
    arguments = parser.parse_args()
    stop = time.monotonic() + 60 * arguments.minutes
    tally = {"noticed": 0, "SURVIVED": 0, "does not build": 0}
    trees = [Tree(number, arguments.sanitize, arguments.near, arguments.language)
             for number in range(arguments.jobs)]
    chosen = [s for s in sites(trees[0].source, arguments.language) if s[0].startswith(arguments.only)]
    if arguments.again:
        again = set(listed(arguments.again))
        chosen = [s for s in chosen if (*s[:3], s[4]) in again]
    random.Random(arguments.seed).shuffle(chosen)
    waiting = queue.Queue()
    for site in chosen[:arguments.count]:
        waiting.put(site)
    workers = [threading.Thread(target=work, args=(tree, waiting, tally, stop)) for tree in trees]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    tried = tally["noticed"] + tally["SURVIVED"]
    print(f"{tried} mutants of {len(chosen)} possible ones, {tally['noticed']} noticed, "
          f"{tally['SURVIVED']} survived ({tally['does not build']} more did not build)")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Builds the program of docs/library.md against the installed library, with CMake and with
pkg-config, and compares what it prints with what the page shows:

    check_client.py SOURCE BUILD CXX [--no-pkg-config]
"""
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile


def run(command, **options):
    done = subprocess.run(command, capture_output=True, text=True, **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}\n{done.stdout}{done.stderr}")
    return done.stdout


def block(page, language, marker):
    """The first fenced block of the language that holds the marker."""
    for text in re.findall(rf"```{language}\n(.*?)```", page, re.DOTALL):
        if marker in text:
            return text
    sys.exit(f"docs/library.md shows no {language} block with {marker}")


def main():
    source, build, compiler = map(pathlib.Path, sys.argv[1:4])
    page = (source / "docs" / "library.md").read_text()
    expected = block(page, "text", "node 1")
    deck = source / "examples" / "01-cantilever.dat"
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        prefix = work / "prefix"
        run(["cmake", "--install", build, "--prefix", prefix, "--component", "development"])
        shutil.copy(source / "tests" / "client" / "CMakeLists.txt", work)
        (work / "client.cc").write_text(block(page, "cpp", "int main"))
        run(["cmake", "-S", work, "-B", work / "build", f"-DCMAKE_PREFIX_PATH={prefix}",
             f"-DCMAKE_CXX_COMPILER={compiler}"])
        run(["cmake", "--build", work / "build"])
        printed = {"cmake": run([work / "build" / "client", deck])}
        if shutil.which("pkg-config"):
            where = next(prefix.rglob("kestol.pc")).parent
            flags = run(["pkg-config", "--cflags", "--libs", "kestol"],
                        env={**os.environ, "PKG_CONFIG_PATH": str(where)})
            run([compiler, work / "client.cc", "-o", work / "plain", *shlex.split(flags)])
            printed["pkg-config"] = run([work / "plain", deck])
    for way, text in printed.items():
        if text != expected:
            sys.exit(f"{way}: printed\n{text}and not\n{expected}")
    print("built by", ", ".join(printed))


main()

#!/usr/bin/env python3
"""Holds the options of a program to what its pages and its completion say of them:

    check_options.py SOURCE PROGRAM PAGE

The options of --help, of the manual page, of the table in the page under docs/ and of the completion
for bash must be the same ones. Prints what is missing, and what is there without being an option.
"""
import pathlib
import re
import subprocess
import sys

OPTION = re.compile(r"(?<![\w-])--?[A-Za-z][\w-]*")


def of_help(program):
    """Words at the left of the list of options; the solver has its list in the usage text."""
    arguments = [] if program.name == "kestol" else ["--help"]
    done = subprocess.run([program, *arguments], capture_output=True, text=True, check=False)
    heads = re.findall(r"^ +(-.*?)(?:  |: |$)", done.stdout, re.M)
    return {option for head in heads for option in OPTION.findall(head)}


def of_manual(page):
    """Tags of the section OPTIONS."""
    section = page.read_text().split("\n.SH OPTIONS\n", 1)[1].split("\n.SH ", 1)[0]
    tags = re.findall(r"^\.TP\n(.*)$", section, re.M)
    return {option for tag in tags for option in OPTION.findall(re.sub(r"\\f.", "", tag.replace("\\-", "-")))}


def of_table(page):
    """Code in the first column of the table whose head begins with "option"."""
    found = set()
    table = False
    for line in page.read_text().splitlines():
        if not line.startswith("|"):
            table = False
        elif line.startswith("| option |"):
            table = True
        elif table:
            first = re.split(r"(?<!\\)\|", line)[1]
            found |= {option for code in re.findall(r"`([^`]*)`", first) for option in OPTION.findall(code)}
    return found


def of_completion(file, name):
    """What bash offers behind the program's name and a hyphen."""
    script = f"""source {file}
    function=$(complete -p {name} | sed 's/.*-F \\([^ ]*\\).*/\\1/')
    COMP_WORDS=({name} -); COMP_CWORD=1
    $function {name} - {name}
    printf '%s\\n' "${{COMPREPLY[@]}}" """
    done = subprocess.run(["bash", "-c", script], capture_output=True, text=True, check=True)
    return set(done.stdout.split())


def differences(source, program, page):
    options = of_help(program)
    if not options:
        yield f"{program.name} --help names no options"
    for place, said in (
            (f"docs/man/{program.name}.1", of_manual(source / "docs" / "man" / f"{program.name}.1")),
            (page, of_table(source / page)),
            (f"completions/{program.name}",
             of_completion(source / "completions" / program.name, program.name))):
        for option in sorted(options - said):
            yield f"{place} lacks {option}"
        for option in sorted(said - options):
            yield f"{place} has {option}, which {program.name} does not know"


def main():
    source, program, page = sys.argv[1:]
    lines = list(differences(pathlib.Path(source), pathlib.Path(program), page))
    for line in lines:
        print(line)
    return 1 if lines else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Holds the options of a program to what its pages and its completion say of them:

    check_options.py SOURCE PROGRAM PAGE

The options of --help, of the manual page, of the table in the page under docs/ and of the completion
for bash must be the same ones. Where --help lists choices, the program takes these alone, and both pages
name each of them; they also name the number that --help gives for an option that is left out. Prints what
is missing, and what is there without being an option.
"""
import pathlib
import re
import subprocess
import sys

OPTION = re.compile(r"(?<![\w-])--?[A-Za-z][\w-]*")
CHOICES = re.compile(r"(?:^|: )((?:\w+, )+\w+ or \w+)$")
DEFAULT = re.compile(r"\((?:default )?([\d.e+-]+)\)$")


def of_help(program):
    """Words at the left of the list of options, each with the line that stands at the right; the solver has
    its list in the usage text."""
    arguments = [] if program.name == "kestol" else ["--help"]
    done = subprocess.run([program, *arguments], capture_output=True, text=True, check=False)
    lines = re.findall(r"^ +(-.*?)(?:  +|: |$)(.*)$", done.stdout, re.M)
    return {option: text for head, text in lines for option in OPTION.findall(head)}


def of_manual(page):
    """Tags of the section OPTIONS, each with the text below it."""
    section = page.read_text().split("\n.SH OPTIONS\n", 1)[1].split("\n.SH ", 1)[0] + "\n"
    section = re.sub(r"\\f.", "", section.replace("\\-", "-"))
    entries = re.findall(r"^\.TP\n(.*)\n((?:(?!\.TP\n).*\n?)*)", section, re.M)
    return {option: text for tag, text in entries for option in OPTION.findall(tag)}


def of_table(page):
    """Code in the first column of the table whose head begins with "option", with the other columns."""
    found = {}
    table = False
    for line in page.read_text().splitlines():
        if not line.startswith("|"):
            table = False
        elif line.startswith("| option |"):
            table = True
        elif table:
            first, *others = re.split(r"(?<!\\)\|", line)[1:]
            for code in re.findall(r"`([^`]*)`", first):
                found |= {option: "|".join(others) for option in OPTION.findall(code)}
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


def choices_of(program, option):
    """What the program says that it takes when it is given something else."""
    done = subprocess.run([program, option, "nothing-of-that-kind", "deck"], capture_output=True, text=True,
                          check=False)
    listed = re.search(r"nothing-of-that-kind is none of (.*?);", done.stderr)
    return set(listed[1].split(", ")) if listed else set()


def unsaid(program, options, texts):
    """Choices and defaults that --help states and another place does not."""
    for option, line in options.items():
        listed, default = CHOICES.search(line), DEFAULT.search(line)
        words = set(re.findall(r"\w+", listed[1])) - {"or"} if listed else set()
        if words and words != choices_of(program, option):
            yield f"{program.name} {option} takes {', '.join(sorted(choices_of(program, option)))}"
        for place, said in texts.items():
            plain = re.sub(r"(?<=\d) (?=\d{3})", "", said.get(option, ""))
            for word in sorted(words) + ([default[1]] if default else []):
                if not re.search(rf"(?<![\w.]){re.escape(word)}(?!\w)", plain):
                    yield f"{place} does not say {word} of {option}"


def differences(source, program, page):
    options = of_help(program)
    if not options:
        yield f"{program.name} --help names no options"
    texts = {f"docs/man/{program.name}.1": of_manual(source / "docs" / "man" / f"{program.name}.1"),
             page: of_table(source / page)}
    completion = of_completion(source / "completions" / program.name, program.name)
    for place, said in (*texts.items(), (f"completions/{program.name}", completion)):
        for option in sorted(set(options) - set(said)):
            yield f"{place} lacks {option}"
        for option in sorted(set(said) - set(options)):
            yield f"{place} has {option}, which {program.name} does not know"
    yield from unsaid(program, options, texts)


def main():
    source, program, page = sys.argv[1:]
    lines = list(differences(pathlib.Path(source), pathlib.Path(program), page))
    for line in lines:
        print(line)
    return 1 if lines else 0


if __name__ == "__main__":
    sys.exit(main())

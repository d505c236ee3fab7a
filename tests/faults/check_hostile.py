"""Decks and combination files that mean harm: check_hostile.py [--sanitized] PROGRAM...

Names that drive a terminal or break a document, lines without end, nesting without end, numbers
beyond all models. Every program ends soon, with its own statuses and few words; what it writes is
a valid document.
"""
import csv
import io
import json
import os
import pathlib
import re
import resource
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET

from faulty import PORTAL

EVIL = ('\x1b[31mred\x07</script><img/onerror=alert(1)>&"\',`$(id)\x9b1m\u202e'.encode("utf-8")
        + b"\x9b2J\xff\xfe\x7f\r\x0b")
ROOM = 3 << 30  # bytes of address space
LIMIT = 60      # seconds
HUGE = "^a (title of letters|number of digits|keyword of letters|unit of letters)|of blanks"


# The reader wants names of units to be short.
EVIL_UNITS = (b"\x1b[31m\x07", b"</script>", b"<img/onerror=x>", b"&\"',`$(id)", b"\xc2\x9b1m\xe2\x80\xae",
              b"\x9b2J\xff\xfe\x7f", b"\0\x1b")


def evil_deck(evil):
    """Evil in the title and in the names of the units, and otherwise sound."""
    return (PORTAL.encode().replace(b"PROBLEM portal", b"PROBLEM " + EVIL)
            .replace(b"kN-m kN m kPa", b" ".join(name + evil for name in (b"s", b"kN", b"m", b"kPa")))
            .replace(b"=kN-m", b"=s" + evil).replace(b"units_mesh=m", b"units_mesh=m" + evil))


def swapped(old, new):
    assert old in PORTAL
    return PORTAL.replace(old, new).encode()


def decks(long):
    """Name and bytes of each deck; `long` is the length of the longest lines."""
    for evil in EVIL_UNITS:
        yield f"units called {evil}", evil_deck(evil)
    yield "evil keywords", PORTAL.encode().replace(b"materials", EVIL.replace(b"\r", b""))
    yield "evil values", swapped("A=1e-2", "A=@ @=3").replace(b"@", EVIL.replace(b"\r", b""))
    yield "binary", bytes(range(256)) * 400
    for what, filler in (("letters", b"x"), ("digits", b"9"), ("blanks", b" "), ("dots", b"."),
                         ("escapes", b"\x1b"), ("high bytes", b"\xff"), ("signs", b"-")):
        line = filler * long
        yield f"a title of {what}", PORTAL.encode().replace(b"PROBLEM portal", b"PROBLEM " + line)
        yield f"a number of {what}", swapped("3 6 4", "3 6@ 4").replace(b"@", line)
        yield f"a keyword of {what}", swapped("materials", "materials@").replace(b"@", line)
        yield f"a material of {what}", swapped("A=1e-2", "A=1e-2@").replace(b"@", line)
        yield f"a unit of {what}", swapped("kN-m kN m", "kN-m kN@ m").replace(b"@", line)
    yield "words without end", PORTAL.encode() + b"word " * (long // 5)
    yield "lines without end", PORTAL.encode() + b"\n" * long
    for number in ("2147483647", "2147483648", "99999999999999999999", "-2147483648", "0"):
        yield f"node {number}", swapped("4 6 0\n", f"{number} 6 0\n")
        yield f"element {number}", swapped("3 3 4 1", f"{number} 3 4 1")
        yield f"an end at node {number}", swapped("3 3 4 1", f"3 3 {number} 1")
        yield f"material {number}", swapped("  1 E=", f"  {number} E=")
        yield f"a support of node {number}", swapped("  4 111", f"  {number} 111")
        yield f"{number} divisions", swapped("TYPE 2d", f"TYPE 2d\nNumOfDivisions {number}")
        yield f"{number} nodes of an element", swapped("nnode = 2", f"nnode = {number}")
        yield f"dimension {number}", swapped("dimension = 2", f"dimension = {number}")
    for value in ("1e308", "1e-308", "nan", "inf", "-1e308", "1e999"):
        yield f"A = {value}", swapped("A=1e-2", f"A={value}")
        yield f"E = {value}", swapped("E=210e6", f"E={value}")
        yield f"x = {value}", swapped("3 6 4", f"3 {value} 4")
        yield f"p = {value}", swapped("2 0 -10", f"2 0 {value}")


def toml_files(long):
    head = 'model = "portal.dat"\n[cases.G]\ncategory = "permanent"\nloads = "model"\n'
    parts = ".".join("a" * 20000)
    name = r"\u001b[31m</script><img onerror=x>\u0000\u009b\u202e,\"\n"
    yield "evil names", (head.replace(".G]", f'."{name}"]')
                         + f'[combinations]\n"{name}2" = {{ "{name}" = 1.5 }}\n[eurocode]\nrules = ["6.10"]\n')
    yield "evil keys", head + f'"{name}" = 1\n'
    yield "no UTF-8", head.encode() + b'x = "\xff\xfe\x1b"\n'
    yield "a deep key", head + f"{parts} = 1\n"
    yield "a deep table", head + f"[{parts}]\n"
    yield "deep arrays", head + "x = " + "[" * 100000 + "]" * 100000 + "\n"
    yield "deep tables", head + "x = " + "{a = " * 100000 + "1" + "}" * 100000 + "\n"
    yield "deep keys in deep tables", head + "x = " + ("{" + ".".join("a" * 2000) + " = ") * 250 + "1" + "}" * 250
    yield "a long name", head.replace("cases.G", "cases." + "G" * long)
    yield "a long comment", head + "# " + "." * long
    yield "a long text", head + 'x = "' + "y" * long + '"'
    yield "an open text", head + 'x = "' + "y" * long
    yield "many mistakes", head + "".join(f"k{k} = 1\n" for k in range(min(long // 1000, 20000)))
    yield "many mistakes on a line", head + "x = {" + ", ".join(f"k{k} = 1" for k in range(20000)) + "}\n"
    yield "many cases", 'model = "portal.dat"\n' + "".join(
        f'[cases.Q{k}]\ncategory = "live-B"\nloads = "wind.dat"\n' for k in range(40)) + \
        '[eurocode]\nrules = ["6.10"]\n'
    for factor in ("1e308", "9223372036854775807", "inf", "nan", "1e999"):
        yield f"factor {factor}", head + f"[combinations]\na = {{ G = {factor} }}\n"


class Attack:
    """One folder, one hostile file after the other."""

    def __init__(self, programs, sanitized):
        self.programs = {pathlib.Path(path).name: path for path in programs}
        self.sanitized = sanitized
        self.failures = self.runs = 0
        self.statuses = set()

    def expect(self, holds, *what):
        if not holds:
            self.failures += 1
            if self.failures <= 30:
                print("FAILED:", *what, flush=True)

    def limit(self):
        if not self.sanitized:
            resource.setrlimit(resource.RLIMIT_AS, (ROOM, ROOM))
        resource.setrlimit(resource.RLIMIT_FSIZE, (200 << 20, 200 << 20))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    def run(self, what, folder, name, arguments):
        out, err = folder / ".out", folder / ".err"
        try:
            with open(out, "wb") as output, open(err, "wb") as errors:
                status = subprocess.run([self.programs[name], *arguments], cwd=folder, stdout=output,
                                        stderr=errors, stdin=subprocess.DEVNULL, timeout=LIMIT,
                                        preexec_fn=self.limit, check=False,
                                        env={**os.environ, "OMPI_MCA_ess_singleton_isolated": "1"}).returncode
        except subprocess.TimeoutExpired:
            status = "hangs"
        said = err.read_bytes()
        self.runs += 1
        self.statuses.add(status)
        self.expect(status in (0, 1, 2), name, what, arguments, "status", status, said[-300:])
        self.expect(status == 0 or said or any(folder.glob("out*")), name, what, "says nothing")
        self.expect(len(said) < 200_000 or what.startswith("many"), name, what, "says", len(said), "bytes",
                    said[:200])
        for place, text in (("error", said), ("output", out.read_bytes())):
            self.expect(is_harmless(text), name, what, "drives the terminal by standard", place, text[:300])
        for path in folder.glob("out*"):
            told = status in (0, 1) or path.suffix == ".sarif"  # that one says why it failed, too
            self.expect(told, name, what, "leaves", path.name, "with status", status)
            fault = invalid(path)
            self.expect(not fault, name, what, path.name, fault)
            path.unlink()
        for path in folder.glob("*.tmp"):
            self.expect(False, name, what, "leaves", path.name)
            path.unlink()

    def attack_by_decks(self, folder, long, only=""):
        """With `only`, the decks that it matches, and one command of each program."""
        deck = folder / "deck.dat"
        for what, text in decks(long):
            if not re.search(only, what):
                continue
            deck.write_bytes(text)
            done = set()
            for name, arguments in (
                    ("kestol-check", ["deck.dat", "--reactions", "--equilibrium"]),
                    ("kestol-check", ["deck.dat", "--format", "json", "-o", "out.json", "--mode", "out.vtu"]),
                    ("kestol-check", ["deck.dat", "--format", "sarif", "-o", "out.sarif"]),
                    ("kestol-export", ["deck.dat", "--json", "out.json", "--csv", "out", "--vtu", "out.vtu",
                                       "--encoding", "ascii"]),
                    ("kestol-export", ["deck.dat", "--mesh-only", "--json", "out.json"]),
                    ("kestol-combine", ["cases.toml", "--json", "out.json", "--csv", "out", "-o", "out.txt"]),
                    ("kestol-combine", ["cases.toml"]),
                    ("kestol-view", ["deck.dat", "-o", "out.html", "--svg", "out"]),
                    ("kestol-mpi", ["-r", "out.res", "--vtu", "out.pvtu", "deck.dat"])):
                if name in self.programs and not (only and name in done):
                    self.run(what, folder, name, arguments)
                    done.add(name)

    def attack_by_toml(self, folder, long):
        for what, text in toml_files(long):
            raw = text if isinstance(text, bytes) else text.encode()
            (folder / "hostile.toml").write_bytes(raw)
            for name, arguments in (
                    ("kestol-combine", ["hostile.toml", "--json", "out.json", "--csv", "out", "--vtu", "out",
                                        "-o", "out.txt"]),
                    ("kestol-combine", ["hostile.toml"]),
                    ("kestol-combine", ["hostile.toml", "--list"]),
                    ("kestol-view", ["portal.dat", "--cases", "hostile.toml", "-o", "out.html"])):
                if name in self.programs:
                    self.run(what, folder, name, arguments)


def is_harmless(text):
    """Whether a terminal, of UTF-8 or of one byte a character, takes it as text."""
    if re.search(rb"[\x00-\x08\x0b-\x1f\x7f]", text):
        return False
    decoded = text.decode("utf-8", "surrogateescape")
    return not re.search("[\x80-\x9f\udc80-\udc9f]", decoded)


def invalid(path):
    """What a reader of the format says against the file; None when it is sound."""
    kind = path.suffix
    try:
        if kind in (".json", ".sarif"):
            json.loads(path.read_bytes().decode("utf-8"), parse_constant=lambda word: 1 / 0)
        elif kind in (".svg", ".pvd", ".pvtu") or (kind == ".vtu" and b"<AppendedData" not in path.read_bytes()):
            ET.parse(path)
        elif kind == ".vtu":
            head = path.read_bytes().split(b"<AppendedData")[0]
            ET.fromstring(head.decode("utf-8") + "</VTKFile>")
        elif kind == ".csv":
            rows = list(csv.reader(io.StringIO(path.read_bytes().decode("utf-8"), newline=""), strict=True))
            if len({len(row) for row in rows}) != 1:
                return "rows of different lengths"
        elif kind == ".html":
            return invalid_page(path.read_bytes())
        elif kind == ".txt" and not is_harmless(path.read_bytes()):
            return "drives a terminal"
    except (ValueError, ET.ParseError, csv.Error, ZeroDivisionError) as failure:
        return f"{type(failure).__name__}: {failure}"
    return None


def invalid_page(page):
    text = page.decode("utf-8")
    if len(page) > 30_000_000:
        return f"{len(page)} bytes"
    if "<img" in text:
        return "an element from a name"
    model = re.search(r'<script type="application/json" id="kestol-model">\n(.*?)\n</script>', text, re.DOTALL)
    if model is None:
        return "no model"
    json.loads(model.group(1))
    return None


def main():
    arguments = sys.argv[1:]
    sanitized = arguments[0] == "--sanitized"
    attack = Attack(arguments[1:] if sanitized else arguments, sanitized)
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        (folder / "portal.dat").write_text(PORTAL)
        (folder / "wind.dat").write_text("nodal_point_loads\n  2 12 0 0\nend\n")
        (folder / "cases.toml").write_text('model = "deck.dat"\n[cases.G]\ncategory = "permanent"\n'
                                           'loads = "model"\n[eurocode]\nrules = ["6.10"]\n')
        attack.attack_by_decks(folder, 100_000)
        if "kestol-mpi" not in attack.programs:  # it has the others' reader, and starts slowly
            attack.attack_by_decks(folder, 4_000_000 if sanitized else 100_000_000, HUGE)
        attack.attack_by_toml(folder, 1_000_000)
    attack.expect(attack.statuses >= {0, 1, 2} or len(attack.programs) < 3, "only", attack.statuses)
    print(f"{attack.runs} hostile runs, {attack.failures} failures")
    sys.exit(1 if attack.failures or not attack.runs else 0)


if __name__ == "__main__":
    main()

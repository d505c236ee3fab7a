#!/usr/bin/env python3
"""Times the pages of kestol-view and writes their table into bench/README.md.

    bench/pages.py BUILD [--cells 224 707] [--dry]

Plates of 2 CELLS^2 triangles: the size of the page, the time in which it is written (from its first byte
to its name) and the time from its address to its first picture, in Debian's chromium without a graphics
card. The best of three.
"""
import argparse
import datetime
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import threading
import time

import run as whole_runs
import tables

HERE = pathlib.Path(__file__).resolve().parent
CHROMIUM = ["chromium", "--headless=new", "--no-sandbox", "--use-angle=swiftshader",
            "--enable-unsafe-swiftshader", "--disable-background-networking", "--remote-debugging-pipe"]
HEAD = ("triangles", "file", "written in", "per 100 MB", "first picture")


def plate(cells):
    """A few steps of the iterative solver are enough: the page is the same."""
    text = subprocess.run([sys.executable, HERE / "make_plate.py", str(cells)], check=True,
                          stdout=subprocess.PIPE, text=True).stdout
    return text + "\nSolver Sparse 1 10 20\n"


def seconds_of_writing(program, folder):
    """The page grows under another name and then gets its own."""
    deck, page = folder / "model.dat", folder / "page.html"
    page.unlink(missing_ok=True)
    known = set(folder.iterdir())
    process = subprocess.Popen([program, "-q", "--solver", "deck", "-o", page, deck])
    first = None
    while not page.exists() and process.poll() is None:
        if first is None and any(path.stat().st_size for path in set(folder.iterdir()) - known):
            first = time.perf_counter()
        time.sleep(0.001)
    end = time.perf_counter()
    if process.wait() != 0:
        sys.exit("kestol-view failed")
    return end - (first or end)


class Browser:
    """Speaks to chromium through its pipes: one JSON text after the other, each ended by a zero byte."""

    def __init__(self, profile):
        asked, answered = os.pipe(), os.pipe()
        ends = (asked[0], answered[1])
        for place, end in zip((asked[1], answered[0]), ends):
            os.set_inheritable(place, False)
            os.set_inheritable(end, True)
        shell = f'exec "$@" 3<&{ends[0]} 4>&{ends[1]}'
        self.process = subprocess.Popen(["bash", "-c", shell, "bash", *CHROMIUM, f"--user-data-dir={profile}"],
                                        close_fds=False, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        for end in ends:
            os.close(end)
        self.out, self.answers = os.fdopen(asked[1], "wb"), os.fdopen(answered[0], "rb")
        self.count, self.rest = 0, b""

    def read(self):
        while b"\0" not in self.rest:
            part = self.answers.raw.read(1 << 16)
            if not part:
                sys.exit("chromium ended")
            self.rest += part
        text, self.rest = self.rest.split(b"\0", 1)
        return json.loads(text)

    def ask(self, method, session=None, **words):
        self.count += 1
        asked = {"id": self.count, "method": method, "params": words}
        if session:
            asked["sessionId"] = session
        self.out.write(json.dumps(asked).encode() + b"\0")
        self.out.flush()
        while True:
            answer = self.read()
            if answer.get("id") == self.count:
                return answer.get("result", {})

    def first_picture(self, page):
        """Seconds from the address to the first picture."""
        target = self.ask("Target.createTarget", url="about:blank")["targetId"]
        session = self.ask("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        start = time.perf_counter()
        self.ask("Page.navigate", session, url=page.as_uri())
        ready = "(async () => { while (!window.kestol) await new Promise((go) => setTimeout(go, 5)); " \
                "await window.kestol.ready; return true; })()"
        said = self.ask("Runtime.evaluate", session, expression=ready, awaitPromise=True, returnByValue=True)
        seconds = time.perf_counter() - start
        self.ask("Target.closeTarget", targetId=target)
        if said.get("result", {}).get("value") is not True:
            sys.exit(f"the page does not open: {said}")
        return seconds

    def close(self):
        self.ask("Browser.close")
        self.process.wait()


def rows(program, sizes):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for cells in sizes:
            (folder / "model.dat").write_text(plate(cells))
            writing = min(seconds_of_writing(program, folder) for _ in range(3))
            page = folder / "page.html"
            megabytes = page.stat().st_size / 1e6
            browser = Browser(folder / "profile")
            guard = threading.Timer(120, browser.process.kill)
            guard.start()
            picture = min(browser.first_picture(page) for _ in range(3))
            browser.close()
            guard.cancel()
            cells_of_row = [str(2 * cells * cells), f"{megabytes:.1f} MB", f"{writing:.2f} s",
                            f"{100 * writing / megabytes:.1f} s", f"{picture:.1f} s"]
            print(" | ".join(cells_of_row), flush=True)
            yield cells_of_row


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=lambda word: pathlib.Path(word).resolve())
    parser.add_argument("--cells", type=int, nargs="+", default=[224, 707])
    parser.add_argument("--dry", action="store_true", help="print the table only")
    arguments = parser.parse_args()
    load = os.getloadavg()[0]
    body = list(rows(arguments.build / "programs" / "view" / "kestol-view", arguments.cells))
    text = [f"{whole_runs.processor()}; {datetime.date.today()}; the best of three; load {load:.1f} at the start.", "",
            *tables.table(HEAD, body)]
    if not arguments.dry:
        tables.renew("pages", "pages.py", "\n".join(text))


if __name__ == "__main__":
    main()

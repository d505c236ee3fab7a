"""Messages on the terminal: findings with a caret, and the progress of long work."""

from __future__ import annotations

import os
import sys
import threading
import time
from typing import TextIO

from .errors import Place, Refusal

RED, MAGENTA, GREEN = "\033[1;31m", "\033[1;35m", "\033[1;32m"
BOLD, PLAIN = "\033[1m", "\033[0m"
PATIENCE = 2.0  # seconds of silence before progress is shown
REFRESH = 0.25
LONGEST = 1000  # bytes of a line that are shown


def has_colour(stream: TextIO) -> bool:
    """Colour only on a terminal, and never against the user's wish."""
    return stream.isatty() and not os.environ.get("NO_COLOR") and os.environ.get("TERM") != "dumb"


def harmless(text: str) -> str:
    """Names of a mesh go to a terminal: what could drive it becomes '?'."""
    return "".join("?" if (ord(c) < 32 and c not in "\t\n") or 127 <= ord(c) < 160 else c
                   for c in text)


def caret_lines(place: Place, colour: bool) -> list[str]:
    """The source line and a caret below the word; a tab stays a tab so that both line up."""
    if not place.source or not place.column:
        return []
    raw = place.source.encode("utf-8", "surrogateescape")[:LONGEST]
    if place.column > len(raw) + 1:
        return []
    before = raw[:place.column - 1].decode("utf-8", "replace")
    word = raw[place.column - 1:][:place.length].decode("utf-8", "replace")
    blank = "".join("\t" if c == "\t" else " " for c in before)
    caret = "^" + "~" * (len(word) - 1)
    return [f"{place.line:5d} | {harmless(raw.decode('utf-8', 'replace'))}",
            f"      | {blank}{GREEN + caret + PLAIN if colour else caret}"]


class Messages:
    """Findings go to standard error; the progress line is overwritten and leaves nothing behind."""

    def __init__(self, quiet: bool = False) -> None:
        self.stream = sys.stderr
        self.quiet = quiet
        self.warnings = 0
        self._step = ""
        self._shown = False
        self._lock = threading.Lock()
        self._done = threading.Event()
        self._thread: threading.Thread | None = None

    def error(self, refusal: Refusal) -> None:
        self._finding("error", refusal.text, refusal.code, refusal.place)

    def warn(self, text: str, code: str, place: Place | None = None) -> None:
        self.warnings += 1
        if not self.quiet:
            self._finding("warning", text, code, place)

    def _finding(self, kind: str, text: str, code: str, place: Place | None) -> None:
        colour = has_colour(self.stream)
        hue = (RED if kind == "error" else MAGENTA) if colour else ""
        bold, plain = (BOLD, PLAIN) if colour else ("", "")
        where = str(place) if place else "kestol-import"
        lines = [f"{bold}{harmless(where)}:{plain} {hue}{kind}:{plain} {harmless(text)} [{code}]"]
        lines += caret_lines(place, colour) if place else []
        with self._lock:
            self._wipe()
            print("\n".join(lines), file=self.stream, flush=True)

    def step(self, text: str) -> None:
        """Names the work that begins; shown when the whole run has taken more than two seconds."""
        self._step = text
        if self._thread is None and not self.quiet and self.stream.isatty():
            self._thread = threading.Thread(target=self._show, daemon=True)
            self._thread.start()

    def finish(self) -> None:
        """Ends the progress line."""
        if self._thread is None:
            return
        self._done.set()
        self._thread.join()
        with self._lock:
            self._wipe()

    def _show(self) -> None:
        start = time.monotonic()
        if self._done.wait(PATIENCE):
            return
        while True:
            with self._lock:
                self._wipe()
                seconds = time.monotonic() - start
                self.stream.write(f"{seconds:4.0f} s  {self._step}")
                self.stream.flush()
                self._shown = True
            if self._done.wait(REFRESH):
                return

    def _wipe(self) -> None:
        if self._shown:
            self.stream.write("\r\033[K")
            self._shown = False

"""Files: read whole, written under a temporary name and renamed when all are complete."""

from __future__ import annotations

import contextlib
import os
import secrets
import signal
import stat
import sys
from collections.abc import Iterable, Iterator

from .errors import Place, Refusal

STANDARD = "-"
ENDING = (signal.SIGHUP, signal.SIGINT, signal.SIGTERM)  # they end a run


def read_bytes(path: str, code: str) -> bytes:
    try:
        with open(path, "rb") as file:
            return file.read()
    except (OSError, ValueError) as failure:
        raise Refusal(f"cannot be read: {reason(failure)}", code, Place(path)) from None


def reason(failure: Exception) -> str:
    return (failure.strerror if isinstance(failure, OSError) else None) or str(failure)


def same_file(one: str, other: str) -> bool:
    """Whether both names mean one file, through links too."""
    try:
        return os.path.samefile(one, other)
    except OSError:
        return os.path.realpath(one) == os.path.realpath(other)


def check_output(path: str, inputs: dict[str, str]) -> None:
    """Refuses an output that names an input; `inputs` gives each path what it is."""
    for other, what in inputs.items():
        if path != STANDARD and same_file(path, other):
            raise Refusal(f"the output names the {what} itself", "output", Place(path))


class Outputs:
    """The files of one run: they get their names together, when all are complete; a run that fails
    leaves what was there. "-" is standard output; a target that exists and is no regular file is
    written directly."""

    def __init__(self) -> None:
        self._temporary: dict[str, str] = {}  # by the target, behind links
        self._replaced: dict[str, str] = {}  # where the old files are, by their names

    def __enter__(self) -> Outputs:
        return self

    def __exit__(self, *failure: object) -> None:
        for temporary in [*self._temporary.values(), *self._replaced.values()]:
            with contextlib.suppress(OSError):
                os.unlink(temporary)

    def write(self, path: str, pieces: Iterable[bytes]) -> None:
        with refusing(path):
            if path == STANDARD:
                for piece in pieces:
                    sys.stdout.buffer.write(piece)
                sys.stdout.buffer.flush()
            elif os.path.exists(path) and not os.path.isfile(path):
                with open(path, "wb") as file:
                    file.writelines(pieces)
            else:
                self._write_beside(os.path.realpath(path), pieces)

    def _write_beside(self, path: str, pieces: Iterable[bytes]) -> None:
        folder, name = os.path.split(path)
        temporary = os.path.join(folder, f".{name}.{secrets.token_hex(4)}.tmp")
        self._temporary[path] = temporary  # before it is there: a signal may come between
        with open(temporary, "xb") as file:
            file.writelines(pieces)
        os.chmod(temporary, mode_for(path))

    def commit(self) -> None:
        named = []
        waiting = signal.pthread_sigmask(signal.SIG_BLOCK, ENDING)
        try:
            for path, temporary in self._temporary.items():
                with refusing(path):
                    self._replace(path, temporary)
                named.append(path)
        except Refusal:
            for path in named:
                self._take_back(path)
            raise
        finally:
            signal.pthread_sigmask(signal.SIG_SETMASK, waiting)
        self._temporary.clear()

    def _replace(self, path: str, temporary: str) -> None:
        """What was there waits under another name, where the file system has links."""
        with contextlib.suppress(OSError):
            os.link(path, temporary + "~")
            self._replaced[path] = temporary + "~"
        os.replace(temporary, path)

    def _take_back(self, path: str) -> None:
        with contextlib.suppress(OSError):
            if path in self._replaced:
                os.replace(self._replaced[path], path)
            else:
                os.unlink(path)


@contextlib.contextmanager
def refusing(path: str) -> Iterator[None]:
    """Failures of the system become refusals of this output."""
    try:
        yield
    except OSError as failure:
        where = "standard output" if path == STANDARD else path
        raise Refusal(f"cannot be written: {reason(failure)}", "output", Place(where)) from None


def mode_for(path: str) -> int:
    """The mode of the file that is replaced, or what a new file gets."""
    with contextlib.suppress(OSError):
        return stat.S_IMODE(os.stat(path).st_mode)
    mask = os.umask(0)
    os.umask(mask)
    return 0o666 & ~mask

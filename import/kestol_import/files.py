"""Files: read whole, written under a temporary name and renamed when complete."""

from __future__ import annotations

import contextlib
import os
import stat
import sys
import tempfile
from collections.abc import Iterable

from .errors import Place, Refusal

STANDARD = "-"


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


def write(path: str, pieces: Iterable[bytes]) -> None:
    """Writes all pieces, or leaves what was there. "-" is standard output; a target that exists
    and is no regular file is written directly."""
    try:
        if path == STANDARD:
            for piece in pieces:
                sys.stdout.buffer.write(piece)
            sys.stdout.buffer.flush()
        elif os.path.exists(path) and not os.path.isfile(path):
            with open(path, "wb") as file:
                file.writelines(pieces)
        else:
            replace(os.path.realpath(path), pieces)
    except OSError as failure:
        where = "standard output" if path == STANDARD else path
        raise Refusal(f"cannot be written: {reason(failure)}", "output", Place(where)) from None


def replace(path: str, pieces: Iterable[bytes]) -> None:
    folder, name = os.path.split(path)
    handle, temporary = tempfile.mkstemp(prefix=f".{name}.", suffix=".tmp", dir=folder)
    try:
        with open(handle, "wb") as file:
            file.writelines(pieces)
        os.chmod(temporary, mode_for(path))
        os.replace(temporary, path)
    except BaseException:
        with contextlib.suppress(OSError):
            os.unlink(temporary)
        raise


def mode_for(path: str) -> int:
    """The mode of the file that is replaced, or what a new file gets."""
    with contextlib.suppress(OSError):
        return stat.S_IMODE(os.stat(path).st_mode)
    mask = os.umask(0)
    os.umask(mask)
    return 0o666 & ~mask

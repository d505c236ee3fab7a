"""Readers of others raise whatever a damaged file provokes: it becomes one finding here."""

from __future__ import annotations

import contextlib
import io
from collections.abc import Iterator

from .errors import Place, Refusal


@contextlib.contextmanager
def refusing(path: str, code: str, text: str) -> Iterator[io.StringIO]:
    """Turns any failure within into the Refusal "text: what was said"; nothing is printed, and
    what is said without a failure is in the text that this gives."""
    heard = io.StringIO()
    try:
        with contextlib.redirect_stdout(heard), contextlib.redirect_stderr(heard):
            yield heard
    except (Refusal, MemoryError):
        raise
    except (Exception, SystemExit) as failure:
        said = " ".join(str(failure).split()) or " ".join(heard.getvalue().split())
        raise Refusal(f"{text}: {said or type(failure).__name__}", code, Place(path)) from None

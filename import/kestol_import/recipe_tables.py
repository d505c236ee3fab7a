"""Tables of a recipe with checks: every wrong value is a Refusal with its line and column."""

from __future__ import annotations

import math
import re
import tomllib
from typing import Any, NoReturn

from .errors import Place, Refusal, nearest
from .expressions import Expression, ExpressionError
from .toml_places import MOST_PARTS, Path, Spans, find_spans, long_key


class Source:
    """The text of a recipe and the places in it."""

    def __init__(self, path: str, raw: bytes) -> None:
        self.path = path
        try:
            self.text = raw.decode("utf-8-sig").replace("\r\n", "\n")
        except UnicodeDecodeError as failure:
            line = raw.count(b"\n", 0, failure.start) + 1
            raise Refusal("the recipe is not UTF-8", "toml", Place(path, line)) from None
        self.data = self._load()
        self.spans: dict[Path, Spans] = find_spans(self.text)

    def _load(self) -> dict[str, Any]:
        deep = long_key(self.text)
        if deep is not None:
            line = self.text.count("\n", 0, deep) + 1
            column = deep - self.text.rfind("\n", 0, deep)
            raise Refusal(f"a key of more than {MOST_PARTS} parts", "toml",
                          self._place_at(line, column, 1))
        try:
            return tomllib.loads(self.text)
        except tomllib.TOMLDecodeError as failure:
            text = str(failure)
            match = re.search(r"\(at line (\d+), column (\d+)\)", text)
            place = Place(self.path)
            if match:
                place = self._place_at(int(match[1]), int(match[2]), 1)
            elif "at end of document" in text:
                place = Place(self.path, self.text.count("\n") + 1)
            said = re.sub(r"\s*\(at .*\)$", "", text)
            raise Refusal(f"no TOML: {said}", "toml", place) from None
        except RecursionError:
            raise Refusal("no TOML: nested too deeply", "toml", Place(self.path)) from None

    def _place_at(self, line: int, column: int, length: int) -> Place:
        """A place by line and column in characters."""
        source = self.text.split("\n")[line - 1]
        before = len(source[:column - 1].encode())
        word = source[column - 1:column - 1 + length]
        return Place(self.path, line, before + 1, max(len(word.encode()), 1), source)

    def place(self, path: Path, value: bool = True) -> Place:
        """Where the value (or the key) of that path stands."""
        if path not in self.spans:
            return Place(self.path)
        first, behind = self.spans[path].value if value else self.spans[path].key
        line = self.text.count("\n", 0, first) + 1
        start = self.text.rfind("\n", 0, first) + 1
        end = self.text.find("\n", first)
        stop = min(behind, end if end >= 0 else len(self.text))
        return self._place_at(line, first - start + 1, stop - first)


class Table:
    """One table: values are taken by key."""

    def __init__(self, source: Source, path: Path, data: dict[str, Any]) -> None:
        self.source = source
        self.path = path
        self.data = data

    def place(self, key: str | None = None, item: int | None = None, value: bool = True) -> Place:
        path = self.path + ((key,) if key is not None else ())
        return self.source.place(path + ((item,) if item is not None else ()), value)

    def refuse(self, key: str, text: str, code: str = "value", item: int | None = None) -> NoReturn:
        raise Refusal(f"{key}: {text}", code, self.place(key, item))

    def only(self, *known: str) -> None:
        """Refuses other keys, with the nearest known one. It comes before all that asks for keys:
        one that seems to be missing is misspelt most of the time."""
        for key in self.data:
            if key not in known:
                raise Refusal(f'"{key}" is not known here{nearest(key, known)}', "key",
                              self.place(key, value=False))

    def has(self, key: str) -> bool:
        return key in self.data

    def need(self, key: str) -> Any:
        if not self.has(key):
            name = ".".join(str(part) for part in self.path)
            raise Refusal(f'[{name}] needs "{key}"', "key", self.place(value=False))
        return self.data[key]

    def table(self, key: str) -> Table:
        """A table below this one; empty when it is not there."""
        value = self.data.get(key, {})
        if not isinstance(value, dict):
            self.refuse(key, f"must be a table: [{key}]")
        return Table(self.source, self.path + (key,), value)

    def tables(self, key: str) -> list[tuple[str, Table]]:
        """Tables [key.NAME] in their order."""
        outer = self.table(key)
        found = []
        for name, value in outer.data.items():
            if not isinstance(value, dict):
                outer.refuse(name, f"must be in a table: [{key}.NAME]")
            found.append((name, outer.table(name)))
        return found

    def string(self, key: str, default: str = "") -> str:
        if not self.has(key):
            return default
        value = self.data[key]
        if not isinstance(value, str):
            self.refuse(key, "must be a text in quotes")
        if any(ord(c) < 32 or ord(c) == 127 for c in value):
            self.refuse(key, "must be one line without control characters")
        return value

    def flag(self, key: str) -> bool:
        if not self.has(key):
            return False
        value = self.data[key]
        if not isinstance(value, bool):
            self.refuse(key, "must be true or false")
        return value

    def number(self, key: str) -> float:
        return self._finite(key, self.need(key), None)

    def _finite(self, key: str, value: Any, item: int | None) -> float:
        if isinstance(value, bool) or not isinstance(value, (int, float)):
            self.refuse(key, "must be a number", item=item)
        try:
            number = float(value)
        except OverflowError:
            number = math.inf
        if not math.isfinite(number):
            self.refuse(key, "must be finite", item=item)
        return number

    def numbers(self, key: str, *counts: int) -> list[float]:
        """A list of as many numbers as one of the counts says."""
        values = self._list(key, counts)
        return [self._finite(key, value, item) for item, value in enumerate(values)]

    def _list(self, key: str, counts: tuple[int, ...]) -> list[Any]:
        values = self.need(key)
        if not isinstance(values, list) or len(values) not in counts:
            self.refuse(key, f"must be a list of {' or '.join(map(str, counts))} numbers")
        return values

    def expression(self, key: str) -> Expression:
        return self._expression(key, self.need(key), None)

    def expressions(self, key: str, *counts: int) -> list[Expression]:
        values = self._list(key, counts)
        return [self._expression(key, value, item) for item, value in enumerate(values)]

    def _expression(self, key: str, value: Any, item: int | None) -> Expression:
        if not isinstance(value, str):
            return Expression(self._finite(key, value, item))
        try:
            return Expression(value)
        except ExpressionError as failure:
            self.refuse(key, str(failure), "expression", item)

    def names(self, key: str) -> list[str]:
        """A list of texts that is not empty."""
        values = self.need(key)
        if not isinstance(values, list) or not values:
            self.refuse(key, 'must be a list of names: ["one", "two"]')
        for item, value in enumerate(values):
            if not isinstance(value, str):
                self.refuse(key, "must be a name in quotes", item=item)
        return values

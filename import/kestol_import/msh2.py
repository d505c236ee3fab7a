"""Gmsh files of version 2.2: every element carries its tags."""

from __future__ import annotations

import numpy as np

from .mesh import Ints
from .msh import MshContent, deck_order, element_kind
from .msh_sections import MshFile, TextNumbers

_FIRST_STRIDE = 1024


class Reader2:
    """Sections of a 2.2 file."""

    def __init__(self, file: MshFile, content: MshContent) -> None:
        self.file = file
        self.content = content

    def read_section(self, section: str) -> bool:
        """False for a section that holds nothing of use."""
        if section == "$Nodes":
            self._read_nodes()
        elif section == "$Elements":
            self._read_elements()
        else:
            return False
        self.file.close_section()
        return True

    def _count(self) -> int:
        text = self.file.line().strip()
        if not text.isdigit():
            self.file.refuse(f"{self.file.section} does not begin with a count")
        return int(text)

    def _read_nodes(self) -> None:
        file, count = self.file, self._count()
        if file.binary:
            record = np.dtype([("number", file.order + "i4"), ("x", file.order + "f8", 3)])
            stop = file.position + count * record.itemsize
            if stop > len(file.data):
                file.ends()
            rows = np.frombuffer(file.data, record, count, file.position)
            file.position = stop
            self.content.numbers = rows["number"].astype(np.int64)
            self.content.points = rows["x"].astype(np.float64)
            return
        numbers = file.numbers(real=True)
        assert isinstance(numbers, TextNumbers)
        table = numbers.doubles(4 * count).reshape(count, 4)
        numbers.check_end()
        whole = table[:, 0].astype(np.int64)
        if not np.array_equal(whole, table[:, 0]):
            file.refuse("$Nodes: a node number is not a whole number")
        self.content.numbers = whole
        self.content.points = np.ascontiguousarray(table[:, 1:])

    def _read_elements(self) -> None:
        count = self._count()
        self.content.elements = True
        if self.file.binary:
            self._read_binary(count)
        else:
            numbers = self.file.numbers(real=False)
            assert isinstance(numbers, TextNumbers)
            self._split(numbers.rest(), count)

    def _read_binary(self, count: int) -> None:
        """Blocks of (type, how many, tags) and rows of number, tags, nodes. Many writers make a
        block of each element: runs of such blocks are tables whose rows begin with the heading."""
        file = self.file
        flat = np.frombuffer(file.data, file.order + "i4", (len(file.data) - file.position) // 4,
                             file.position)
        at = 0
        while count > 0:
            if at + 3 > len(flat):
                file.ends()
            kind, many, tags = (int(i) for i in flat[at:at + 3])
            if many < 1 or tags < 0:
                file.refuse("$Elements: a block has no elements or a negative number of tags")
            width = 1 + tags + element_kind(file, kind).nodes
            head = 3 if many == 1 else 0
            if many == 1:
                many = run_length(flat, at, 3 + width, count, slice(0, 3))
            else:
                at += 3
            stop = at + many * (head + width)
            if many == 0 or stop > len(flat):
                file.ends()
            rows = flat[at:stop].reshape(many, head + width)[:, head:].astype(np.int64)
            self._add(kind, rows[:, 0], rows[:, 1:1 + tags], rows[:, 1 + tags:])
            at = stop
            count -= many
        file.position += 4 * at

    def _split(self, flat: Ints, count: int) -> None:
        """Rows of number, type, count of tags, tags, nodes. Their length changes with type and
        tags: runs of equal rows are found and taken as tables."""
        at = 0
        while count > 0:
            if at + 3 > len(flat):
                self.file.refuse("$Elements has fewer numbers than its counts say")
            kind, tags = int(flat[at + 1]), int(flat[at + 2])
            if tags < 0:
                self.file.refuse("$Elements: a negative number of tags")
            width = 3 + tags + element_kind(self.file, kind).nodes
            many = run_length(flat, at, width, count, slice(1, 3))
            if many == 0:
                self.file.refuse("$Elements has fewer numbers than its counts say")
            rows = flat[at:at + many * width].reshape(many, width)
            self._add(kind, rows[:, 0], rows[:, 3:3 + tags], rows[:, 3 + tags:])
            at += many * width
            count -= many
        if at != len(flat):
            self.file.refuse("$Elements has more numbers than its counts say")

    def _add(self, type_number: int, numbers: Ints, tags: Ints, nodes: Ints) -> None:
        """The first tag is the physical group; 0 stands for none."""
        kind = element_kind(self.file, type_number)
        first = self.content.builder.add_cells(kind, deck_order(kind, nodes), numbers)
        if tags.shape[1] == 0:
            return
        physical = tags[:, 0]
        for tag in np.unique(physical):
            if tag == 0:
                continue
            rows = first + np.flatnonzero(physical == tag)
            self.content.builder.add_rows(self.content.name_of(kind.dimension, int(abs(tag))),
                                          kind, rows)


def run_length(flat: Ints, at: int, width: int, most: int, same: slice) -> int:
    """How many rows of this width follow each other from `at` with the first one's values in the
    columns `same`. Windows double: short runs cost little and long ones one look at each row."""
    wanted = flat[at:at + width][same]
    most = min(most, (len(flat) - at) // width)
    done, window = 0, _FIRST_STRIDE
    while done < most:
        many = min(window, most - done)
        start = at + done * width
        table = flat[start:start + many * width].reshape(many, width)
        equal = (table[:, same] == wanted).all(axis=1)
        if not equal.all():
            return done + int(np.argmin(equal))
        done += many
        window *= 2
    return done

"""Gmsh files of version 2.2 and 4.1, text and binary, with every physical name."""

from __future__ import annotations

import re
from collections.abc import Callable
from dataclasses import dataclass, field

import numpy as np

from .errors import Place, Refusal
from .mesh import Kind, Mesh, MeshBuilder, Reals, Ints, kind_of
from .msh_sections import CODE, MshFile

# Number of a type of element -> kind and how many nodes it has.
_TYPES = {1: ("line", 2), 2: ("triangle", 3), 3: ("quad", 4), 4: ("tetra", 4),
          5: ("hexahedron", 8), 6: ("wedge", 6), 7: ("pyramid", 5), 8: ("line3", 3),
          9: ("triangle6", 6), 10: ("quad9", 9), 11: ("tetra10", 10), 12: ("hexahedron27", 27),
          13: ("wedge18", 18), 14: ("pyramid14", 14), 15: ("vertex", 1), 16: ("quad8", 8),
          17: ("hexahedron20", 20), 18: ("wedge15", 15), 19: ("pyramid13", 13),
          20: ("triangle9", 9), 21: ("triangle10", 10), 22: ("triangle12", 12),
          23: ("triangle15", 15), 24: ("triangle15", 15), 25: ("triangle21", 21),
          26: ("line4", 4), 27: ("line5", 5), 28: ("line6", 6), 29: ("tetra20", 20),
          30: ("tetra35", 35), 31: ("tetra56", 56), 36: ("quad16", 16), 37: ("quad25", 25),
          38: ("quad36", 36), 92: ("hexahedron64", 64), 93: ("hexahedron125", 125)}
# These files count the mid-side of 3-4 before that of 2-4.
_TETRA10_ORDER = [0, 1, 2, 3, 4, 5, 6, 7, 9, 8]


@dataclass
class MshContent:
    """What a version's reader fills in."""

    builder: MeshBuilder
    names: dict[tuple[int, int], str] = field(default_factory=dict)  # (dimension, tag) -> name
    points: Reals | None = None
    numbers: Ints | None = None
    elements: bool = False

    def name_of(self, dimension: int, tag: int) -> str:
        return self.names.get((dimension, tag), str(tag))


def is_msh(data: bytes) -> bool:
    """Whether the bytes begin, or are the beginning of, a Gmsh file."""
    start = data.lstrip()[:16]
    return bool(start) and any(mark.startswith(start[:len(mark)])
                               for mark in (b"$MeshFormat", b"$Comments"))


def element_kind(file: MshFile, number: int) -> Kind:
    if number not in _TYPES:
        file.refuse(f"element type {number} is not known")
    return kind_of(*_TYPES[number])


def deck_order(kind: Kind, nodes: Ints) -> Ints:
    """Nodes of cells in the order of the deck."""
    return nodes[:, _TETRA10_ORDER] if kind.name == "tetra10" else nodes


def read_msh(path: str, data: bytes, progress: Callable[[str], None]) -> Mesh:
    """The mesh of a Gmsh file; whatever is wrong with the file is a Refusal."""
    from .msh2 import Reader2
    from .msh4 import Reader4
    file = MshFile(path, data)
    content = MshContent(MeshBuilder(path))
    reader: Reader2 | Reader4 | None = None
    file.section = "$MeshFormat"
    while section := file.next_section():
        progress(f"reading {section} of {path}")
        if section == "$MeshFormat":
            reader = Reader4(file, content) if read_format(file).startswith("4") else Reader2(
                file, content)
            file.close_section()
        elif reader is None and section != "$Comments":
            if "$MeshFormat".startswith(section):
                file.section = "$MeshFormat"
                file.ends()
            file.refuse(f"{section} stands before $MeshFormat")
        elif section == "$PhysicalNames":
            read_names(file, content)
        elif reader is None or not reader.read_section(section):
            file.skip_section()
    return assemble(file, content)


def read_format(file: MshFile) -> str:
    """The version; sets whether the file is binary, its byte order and its size of a size."""
    words = file.line().split()
    if len(words) < 3 or words[1] not in ("0", "1") or words[2] not in ("4", "8"):
        file.refuse("$MeshFormat is not 'version file-type data-size'")
    if not re.fullmatch(r"2(\.\d+)?|4\.1", words[0]):
        file.position -= 1
        file.refuse(f"version {words[0]} of Gmsh's format is not read: save it as 4.1 "
                    "(gmsh -format msh41)")
    file.size_bytes = int(words[2])
    if words[1] == "1":
        one = file.data[file.position:file.position + 4]
        if len(one) < 4:
            file.ends()
        if one not in (b"\1\0\0\0", b"\0\0\0\1"):
            file.refuse("$MeshFormat: the number 1 that tells the byte order is missing")
        file.order = "<" if one[0] == 1 else ">"
        file.position += 4
        file.binary = True
    return words[0]


def read_names(file: MshFile, content: MshContent) -> None:
    """Lines of 'dimension tag "name"'; the name reaches from the first quote to the last one."""
    end = file.end_position()
    count = file.line().strip()
    if not count.isdigit():
        file.refuse("$PhysicalNames does not begin with a count")
    for _ in range(int(count)):
        if file.position >= end:
            file.refuse("$PhysicalNames has fewer names than it says")
        match = re.fullmatch(r'\s*(\d+)\s+(-?\d+)\s+"(.*)"\s*', file.line())
        if match is None:
            file.refuse('$PhysicalNames: a line is not \'dimension tag "name"\'',
                        file.position - 1)
        content.names[int(match[1]), int(match[2])] = match[3]
    file.close_section()


def assemble(file: MshFile, content: MshContent) -> Mesh:
    if content.points is None or content.numbers is None:
        raise Refusal("the file has no $Nodes", CODE, Place(file.path))
    if not content.elements:
        raise Refusal("the file has no $Elements", CODE, Place(file.path))
    if not np.isfinite(content.points).all():
        raise Refusal("a node has a coordinate that is not finite", CODE, Place(file.path))
    if len(np.unique(content.numbers)) != len(content.numbers):
        raise Refusal("a node number is given twice", CODE, Place(file.path))
    order = np.argsort(content.numbers, kind="stable")
    if not np.array_equal(order, np.arange(len(order))):
        content.points, content.numbers = content.points[order], content.numbers[order]
    try:
        return content.builder.finish(content.points, content.numbers,
                                      list(content.names.values()))
    except KeyError as missing:
        raise Refusal(f"an element has node {missing.args[0]}, which is not in $Nodes", CODE,
                      Place(file.path)) from None

"""Gmsh files of version 4.1: elements and nodes belong to entities, and these to groups."""

from __future__ import annotations

import numpy as np

from .mesh import Ints
from .msh import MshContent, deck_order, element_kind
from .msh_sections import MshFile, Numbers, TextNumbers

Entity = tuple[int, int]  # dimension and tag


class Reader4:
    """Sections of a 4.1 file."""

    def __init__(self, file: MshFile, content: MshContent) -> None:
        self.file = file
        self.content = content
        self.physical: dict[Entity, list[int]] = {}
        self.boundary: dict[Entity, list[Entity]] = {}
        self.nodes: dict[Entity, list[Ints]] = {}
        self.has_entities = False

    def read_section(self, section: str) -> bool:
        """False for a section that holds nothing of use."""
        if section == "$PartitionedEntities":
            self.file.refuse("the mesh is partitioned: save it unpartitioned")
        readers = {"$Entities": self._read_entities, "$Nodes": self._read_nodes,
                   "$Elements": self._read_elements}
        if section not in readers:
            return False
        if section == "$Elements" and self.content.names and not self.has_entities:
            self.file.refuse("groups are named but there is no $Entities that says what they hold")
        numbers = self.file.numbers(real=section != "$Elements")
        readers[section](numbers)
        if isinstance(numbers, TextNumbers):
            numbers.check_end()
        self.file.close_section()
        return True

    def _read_entities(self, numbers: Numbers) -> None:
        self.has_entities = True
        counts = [int(n) for n in numbers.sizes(4)]
        for dimension, count in enumerate(counts):
            for _ in range(count):
                tag = int(numbers.ints(1)[0])
                numbers.doubles(3 if dimension == 0 else 6)
                groups = numbers.ints(int(numbers.sizes(1)[0]))
                self.physical[dimension, tag] = [abs(int(g)) for g in groups]
                if dimension:
                    edges = numbers.ints(int(numbers.sizes(1)[0]))
                    self.boundary[dimension, tag] = [(dimension - 1, abs(int(e))) for e in edges]

    def _read_nodes(self, numbers: Numbers) -> None:
        blocks, total = (int(n) for n in numbers.sizes(4)[:2])
        tags, points = [np.zeros(0, np.int64)], [np.zeros((0, 3))]
        for _ in range(blocks):
            dimension, tag, parametric = (int(i) for i in numbers.ints(3))
            count = int(numbers.sizes(1)[0])
            width = 3 + (dimension if parametric else 0)
            block = numbers.sizes(count)
            tags.append(block)
            points.append(numbers.doubles(count * width).reshape(count, width)[:, :3])
            self.nodes.setdefault((dimension, tag), []).append(block)
        self.content.numbers = np.concatenate(tags)
        self.content.points = np.concatenate(points)
        if len(self.content.numbers) != total:
            self.file.refuse(f"$Nodes says {total} nodes and has {len(self.content.numbers)}")

    def _read_elements(self, numbers: Numbers) -> None:
        self.content.elements = True
        blocks, total = (int(n) for n in numbers.sizes(4)[:2])
        seen: set[Entity] = set()
        for _ in range(blocks):
            dimension, tag, type_number = (int(i) for i in numbers.ints(3))
            count = int(numbers.sizes(1)[0])
            kind = element_kind(self.file, type_number)
            width = 1 + kind.nodes
            rows = numbers.sizes(count * width).reshape(count, width)
            first = self.content.builder.add_cells(kind, deck_order(kind, rows[:, 1:]), rows[:, 0])
            total -= count
            seen.add((dimension, tag))
            for group in self.physical.get((dimension, tag), []):
                self.content.builder.add_rows(self.content.name_of(dimension, group), kind,
                                              np.arange(first, first + count))
        if total:
            self.file.refuse("$Elements has not as many elements as it says")
        self._name_bare_entities(seen)

    def _name_bare_entities(self, seen: set[Entity]) -> None:
        """A group may name a point or a curve that has no elements: its nodes are meant."""
        for entity, groups in self.physical.items():
            if entity in seen:
                continue
            nodes = self._nodes_on(entity)
            for group in groups if len(nodes) else []:
                self.content.builder.add_nodes(self.content.name_of(entity[0], group), nodes)

    def _nodes_on(self, entity: Entity) -> Ints:
        """The nodes of an entity and of all that bounds it."""
        pieces, todo, done = [np.zeros(0, np.int64)], [entity], {entity}
        while todo:
            one = todo.pop()
            pieces += self.nodes.get(one, [])
            fresh = [e for e in self.boundary.get(one, []) if e not in done]
            done.update(fresh)
            todo += fresh
        return np.unique(np.concatenate(pieces))

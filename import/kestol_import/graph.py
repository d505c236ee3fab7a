"""Graphs over whole arrays: connected parts, neighbours, and an order of small bandwidth."""

from __future__ import annotations

import numpy as np

from .mesh import Flags, Ints, Reals


def components(count: int, a: Ints, b: Ints) -> Ints:
    """For each of `count` vertices the smallest vertex of its connected part; edges a[i]-b[i].

    Roots are hooked onto smaller roots, all at once, and paths are shortened, until no edge joins
    two parts. A hook that another one overwrites is made in the next round."""
    parent = np.arange(count, dtype=np.int64)
    while True:
        roots_a, roots_b = parent[a], parent[b]
        open_edges = roots_a != roots_b
        if not open_edges.any():
            return parent
        a, b = a[open_edges], b[open_edges]
        low = np.minimum(roots_a[open_edges], roots_b[open_edges])
        high = np.maximum(roots_a[open_edges], roots_b[open_edges])
        parent[high] = low
        while True:
            shorter = parent[parent]
            if np.array_equal(shorter, parent):
                break
            parent = shorter


def neighbours(count: int, tables: list[Ints]) -> tuple[Ints, Ints]:
    """Start of each vertex' neighbours (count + 1,) and the neighbours, ascending; vertices are
    neighbours when a row of a table holds both."""
    keys = []
    for table in tables:
        columns = table.shape[1]
        for i in range(columns):
            for j in range(i + 1, columns):
                low = np.minimum(table[:, i], table[:, j]).astype(np.int64)
                high = np.maximum(table[:, i], table[:, j])
                keys.append(unique(low * count + high))
    pairs = unique(np.concatenate(keys)) if keys else np.zeros(0, np.int64)
    low, high = np.divmod(pairs, count)
    both = np.concatenate([pairs, high * count + low])
    both.sort()
    first, second = np.divmod(both, count)
    starts = np.zeros(count + 1, np.int64)
    np.cumsum(np.bincount(first, minlength=count), out=starts[1:])
    return starts, second.astype(np.int32)


def unique(values: Ints) -> Ints:
    """The values ascending, each once; sorts in place, which np.unique does not."""
    values.sort()
    keep = np.ones(len(values), bool)
    keep[1:] = values[1:] != values[:-1]
    kept: Ints = values[keep]
    return kept


def gather(starts: Ints, lists: Ints, vertices: Ints) -> tuple[Ints, Ints]:
    """The neighbours of all these vertices one after the other, and whose they are (positions)."""
    lengths = starts[vertices + 1] - starts[vertices]
    owner = np.repeat(np.arange(len(vertices)), lengths)
    behind = np.cumsum(lengths)
    within = np.arange(int(behind[-1]) if len(behind) else 0) - np.repeat(behind - lengths, lengths)
    return lists[starts[vertices][owner] + within], owner


def levels(starts: Ints, lists: Ints, root: int, seen: Flags, degrees: Ints) -> list[Ints]:
    """Breadth first from `root`; each level by the order of its parents, then by degree."""
    seen[root] = True
    found = [np.array([root])]
    while True:
        near, owner = gather(starts, lists, found[-1])
        fresh = ~seen[near]
        near, owner = near[fresh], owner[fresh]
        if not len(near):
            return found
        order = np.lexsort((degrees[near], owner))
        near = near[order]
        _, first = np.unique(near, return_index=True)
        level = near[np.sort(first)]
        seen[level] = True
        found.append(level)


def cuthill_mckee(count: int, tables: list[Ints]) -> Ints:
    """All vertices in the reverse order of Cuthill and McKee (Proc. 24th Nat. Conf. ACM 1969),
    part by part, each from an end that two searches find."""
    starts, lists = neighbours(count, tables)
    degrees = np.diff(starts)
    seen = np.zeros(count, bool)
    order = []
    for root in np.argsort(degrees, kind="stable"):
        if seen[root]:
            continue
        end = int(root)
        for _ in range(2):
            last = levels(starts, lists, end, seen.copy(), degrees)[-1]
            end = int(last[np.argmin(degrees[last])])
        order += levels(starts, lists, end, seen, degrees)
    return np.concatenate(order)[::-1] if order else np.zeros(0, np.int64)


def close_pairs(points: Reals, tolerance: float) -> tuple[Ints, Ints] | None:
    """Pairs of points that are not farther apart than `tolerance`; None when there are too many.

    Points are sorted along one line; those within the tolerance along it are compared. The line is
    no axis, and no direction that drawings prefer, so that few points share a place on it."""
    direction = np.array([0.6180339887, 0.5436890127, 0.5671432904])
    along = points @ (direction / np.linalg.norm(direction))
    order = np.argsort(along, kind="stable")
    along, points = along[order], points[order]
    first, second = [np.zeros(0, np.int64)], [np.zeros(0, np.int64)]
    active = np.arange(len(points))
    for step in range(1, len(points)):
        active = active[active < len(points) - step]
        active = active[along[active + step] - along[active] <= tolerance]
        if not len(active):
            break
        if step > 2000:
            return None
        apart = points[active + step] - points[active]
        near = active[np.einsum("ij,ij->i", apart, apart) <= tolerance * tolerance]
        first.append(order[near])
        second.append(order[near + step])
    return np.concatenate(first), np.concatenate(second)

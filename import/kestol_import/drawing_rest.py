"""What of a drawing becomes no beam: told so that no member is lost unseen."""

from __future__ import annotations

import collections
from collections.abc import Collection

from .errors import Place, Refusal

CODE = "dxf"
WITH_ARCS = " with arcs"
CURVES = ("ARC", "CIRCLE", "ELLIPSE", "SPLINE", "HELIX", "LWPOLYLINE" + WITH_ARCS,
          "POLYLINE" + WITH_ARCS)
STRAIGHT = "beams are straight: draw segments"

# Writing, dimensions, fills, pictures and endless lines are never members. Every other kind may be
# one, those that this program has not heard of too.
NEVER_MEMBERS = frozenset("""
    TEXT MTEXT RTEXT ARCALIGNEDTEXT ATTDEF ATTRIB ACAD_TABLE TOLERANCE SHAPE
    DIMENSION ARC_DIMENSION LARGE_RADIAL_DIMENSION LEADER MLEADER MULTILEADER
    HATCH MPOLYGON SOLID TRACE WIPEOUT IMAGE OLEFRAME OLE2FRAME
    PDFUNDERLAY DWFUNDERLAY DGNUNDERLAY POINTCLOUD
    VIEWPORT RAY XLINE LIGHT SUN CAMERA POSITIONMARKER GEOPOSITIONMARKER
    """.split())


class LeftOut:
    """Counts of entities by their kinds and layers."""

    def __init__(self) -> None:
        self._kinds: dict[str, collections.Counter[str]] = {}

    def add(self, kind: str, layer: str) -> None:
        self._kinds.setdefault(kind, collections.Counter())[layer] += 1

    def refuse_curves(self, path: str, members: Collection[str]) -> None:
        """Refuses the first of these layers that has curves."""
        for layer in members:
            counts = [f"{layers[layer]} {kind}" for kind, layers in self._kinds.items()
                      if kind in CURVES and layer in layers]
            if counts:
                raise Refusal(f'layer "{layer}" has {", ".join(counts)}; {STRAIGHT}', CODE,
                              Place(path))

    def warnings(self) -> list[str]:
        """One line for each kind that may be a member, with its layers."""
        lines = []
        for kind, layers in self._kinds.items():
            if kind not in NEVER_MEMBERS:
                names = ", ".join(f'"{layer}"' for layer in layers)
                plural = "s" if len(layers) > 1 else ""
                lines.append(f"{layers.total()} {kind} on layer{plural} {names} left out; {cure(kind)}")
        return lines

    def notes(self) -> list[str]:
        kinds = ", ".join(f"{layers.total()} {kind}" for kind, layers in sorted(self._kinds.items())
                          if kind in NEVER_MEMBERS)
        return [f"entities of the drawing that are no beams are left out: {kinds}"] if kinds else []


def cure(kind: str) -> str:
    if kind in CURVES:
        return STRAIGHT
    if kind == "INSERT":
        return "explode the blocks to have what is in them"
    return "only LINE, 3DLINE, LWPOLYLINE and POLYLINE become beams"

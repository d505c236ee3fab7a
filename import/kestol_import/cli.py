"""The command line."""

from __future__ import annotations

import argparse
import os
import sys
from collections.abc import Collection, Sequence
from typing import NoReturn, TextIO

import numpy as np

from . import __version__
from .applied import Applied
from .deck import Deck
from .errors import Place, Refusal, plural
from .files import STANDARD, Outputs, check_output, read_bytes
from .marks import OldDeck, fresh
from .mesh import Mesh
from .messages import Messages
from .recipe import Recipe, read_recipe
from .report import list_groups, number_map, summary

DONE, NOT_DONE = 0, 2

DESCRIPTION = """\
Makes a deck of kestol from a mesh with named groups and a recipe that says what the groups are.
Meshes: Gmsh MSH 2.2 and 4.1, DXF drawings of frames, and whatever meshio reads."""
EPILOG = """\
exit status: 0 done; 2 not done, nothing written
A deck that exists is refused; with --force its marked blocks are replaced and all other lines stay.
The recipe is described in docs/import.md."""


class Parser(argparse.ArgumentParser):
    """A wrong command line ends with one line and the way to the help."""

    def error(self, message: str) -> NoReturn:
        self.exit(NOT_DONE, f"kestol-import: {message}; try kestol-import --help\n")


def parser() -> Parser:
    made = Parser(prog="kestol-import", description=DESCRIPTION, epilog=EPILOG, allow_abbrev=False,
                  usage="kestol-import [OPTIONS] MESH RECIPE.toml -o DECK\n"
                  "       kestol-import --list MESH [-o FILE]",
                  formatter_class=argparse.RawDescriptionHelpFormatter)
    made.add_argument("files", metavar="MESH RECIPE.toml", nargs="*")
    made.add_argument("-o", "--output", metavar="DECK", help='the deck, or the list; "-": standard output')
    made.add_argument("--list", action="store_true",
                      help="the groups of the mesh: name, dimension, cells, nodes, size")
    made.add_argument("--map", metavar="FILE.csv", help="old and new numbers")
    made.add_argument("--order", choices=("keep", "rcm"), default="keep",
                      help="numbers of the nodes: in the order of the mesh, or of small bandwidth")
    made.add_argument("--merge", metavar="TOL", type=tolerance,
                      help="join nodes that are not farther apart (DXF: 1e-6 of the drawing)")
    made.add_argument("--split-quads", action="store_true",
                      help="cut quadrilaterals into two triangles")
    made.add_argument("--force", action="store_true", help="renew a deck, or replace a list, that exists")
    made.add_argument("-q", "--quiet", action="store_true", help="no report and no warnings")
    made.add_argument("-v", "--verbose", action="store_true", help="say what was done on the way")
    made.add_argument("--version", action="version", version=f"kestol-import {__version__}")
    return made


def parsed(made: Parser, arguments: Sequence[str]) -> argparse.Namespace:
    """Options may stand between the mesh and the recipe; behind "--" all are files, which the
    standard library forgets when it takes both."""
    words = list(arguments)
    end = words.index("--") if "--" in words else len(words)
    options = made.parse_intermixed_args(words[:end])
    files = options.files + words[end + 1:]
    if not files:
        made.error("the following arguments are required: MESH")
    if len(files) > 2:
        made.error(f"unrecognized arguments: {' '.join(files[2:])}")
    options.mesh, options.recipe = (*files, None)[:2]
    return options


def tolerance(text: str) -> float:
    try:
        value = float(text)
    except ValueError:
        value = -1.0
    if not 0 <= value < float("inf"):
        raise argparse.ArgumentTypeError(f'"{text}" is not a distance')
    return value


def main(arguments: Sequence[str] | None = None) -> int:
    made = parser()
    try:
        options = parsed(made, sys.argv[1:] if arguments is None else arguments)
        check_usage(made, options)
    except BrokenPipeError:
        return NOT_DONE
    messages = Messages(options.quiet)
    try:
        run(options, messages)
        sys.stdout.flush()
        return DONE
    except Refusal as refusal:
        messages.error(refusal)
    except MemoryError:
        messages.error(Refusal("not enough memory", "memory", Place(options.mesh)))
    except OSError as failure:
        messages.error(Refusal(f"cannot be written: {failure.strerror}", "output",
                               Place("standard output")))
        sys.stdout = None  # type: ignore[assignment]  # nothing is left to be flushed
    finally:
        messages.finish()
    return NOT_DONE


def check_usage(made: Parser, options: argparse.Namespace) -> None:
    if options.list:
        if options.recipe or options.map:
            made.error("--list takes a mesh only")
        return
    if not options.recipe:
        made.error("a recipe is missing")
    if not options.output:
        made.error("-o DECK is missing")
    if options.output == options.map == STANDARD:
        made.error("the deck and the map cannot both go to standard output")


def run(options: argparse.Namespace, messages: Messages) -> None:
    if options.list:
        list_mesh(options, messages)
        return
    inputs = {options.mesh: "mesh", options.recipe: "recipe"}
    check_output(options.output, inputs)
    if options.map:
        check_output(options.map, {**inputs, options.output: "deck"})
    recipe = read_recipe(options.recipe, read_bytes(options.recipe, "file"))
    old = old_deck(options)
    mesh = read_mesh(options, messages, recipe.members)
    prepare(mesh, options, messages)
    deck, applied = build(mesh, recipe, options, messages)
    messages.step(f"writing {options.output}")
    with Outputs() as outputs:
        if old and old.has_marks:
            outputs.write(options.output, old.renewed(deck.block))
            kept = plural(old.hand_lines, "line")
            note(options, f"{options.output}: {kept} by hand kept around the blocks")
        else:
            outputs.write(options.output, fresh(deck.block))
        if options.map:
            outputs.write(options.map, number_map(deck.model))
        messages.finish()
        if not options.quiet:
            report_stream(options).write(summary(deck.model, options.output, applied))
            report_stream(options).flush()
        outputs.commit()


def report_stream(options: argparse.Namespace) -> TextIO:
    """Standard output, unless the deck or the map goes there."""
    return sys.stderr if STANDARD in (options.output, options.map) else sys.stdout


def note(options: argparse.Namespace, text: str) -> None:
    if options.verbose and not options.quiet:
        print(f"kestol-import: note: {text}", file=sys.stderr)


def list_mesh(options: argparse.Namespace, messages: Messages) -> None:
    target = options.output or STANDARD
    check_output(target, {options.mesh: "mesh"})
    if os.path.isfile(target) and not options.force:
        raise Refusal("the file exists: --force replaces it", "exists", Place(target))
    mesh = read_mesh(options, messages)
    prepare(mesh, options, messages)
    with Outputs() as outputs:
        outputs.write(target, [list_groups(mesh).encode("utf-8", "surrogateescape")])
        outputs.commit()


def old_deck(options: argparse.Namespace) -> OldDeck | None:
    """What stands in the place of the deck; refused without --force."""
    if options.output == STANDARD or not os.path.isfile(options.output):
        return None
    if not options.force:
        raise Refusal("the deck exists: --force renews its marked blocks", "exists",
                      Place(options.output))
    return OldDeck(options.output, read_bytes(options.output, "file"))


def read_mesh(options: argparse.Namespace, messages: Messages,
              members: Collection[str] = ()) -> Mesh:
    """The mesh as it is in its file; `members` are the groups that shall become elements."""
    path: str = options.mesh
    messages.step(f"reading {path}")
    if path.lower().endswith(".dxf"):
        from .dxf import read_dxf
        read_bytes(path, "file")
        mesh = read_dxf(path, members)
    else:
        from .msh import is_msh, read_msh
        data = read_bytes(path, "file")
        if not data.strip():
            raise Refusal("the file is empty", "mesh", Place(path))
        if is_msh(data):
            mesh = read_msh(path, data, messages.step)
        else:
            del data
            from .bridge import read_with_meshio
            mesh = read_with_meshio(path)
    for text in mesh.warnings:
        messages.warn(text, "reader", Place(path))
    if not len(mesh.points) or not any(len(b.nodes) for b in mesh.blocks.values()):
        raise Refusal("the mesh has no cells", "mesh", Place(path))
    for text in mesh.notes:
        note(options, text)
    return mesh


def prepare(mesh: Mesh, options: argparse.Namespace, messages: Messages) -> None:
    """Changes of the mesh itself, before anything is said about its groups."""
    from .merge import merge_nodes
    from .orientation import order_mid_sides
    from .quads import split_quads
    distance = options.merge
    if distance is None and options.mesh.lower().endswith(".dxf"):
        distance = 1e-6 * float(np.ptp(mesh.points, axis=0).max())
    if distance is not None:
        messages.step("merging nodes")
        merged = plural(merge_nodes(mesh, distance), "node")
        note(options, f"{merged} merged within {distance:g}")
    if options.split_quads:
        note(options, f"{plural(split_quads(mesh), 'quadrilateral')} split")
    if order_mid_sides(mesh):
        note(options, "mid-sides of 2-4 and 3-4 exchanged in all tetrahedra")


def build(mesh: Mesh, recipe: Recipe, options: argparse.Namespace,
          messages: Messages) -> tuple[Deck, list[Applied]]:
    """From cells to elements, numbers, supports and loads."""
    from .build import build_model, build_loads, build_supports, materials_applied
    model = build_model(mesh, recipe, options.order, messages,
                        lambda text: note(options, text))
    supports, held = build_supports(model, messages)
    loads, forces, loaded = build_loads(model, messages)
    deck = Deck(model, supports, loads, forces)
    return deck, [*materials_applied(model), *held, *loaded]

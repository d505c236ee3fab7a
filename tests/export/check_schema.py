#!/usr/bin/env python3
"""The JSON document against a schema that knows every member: check_schema.py KESTOL_EXPORT DECK..."""
import json
import pathlib
import sys
import tempfile

import decks
import jsonschema
from exporter import Failures, run

NUMBER = {"type": ["number", "null"]}
INTEGER = {"type": "integer", "minimum": 0}
COMPONENTS = ("N", "Vy", "Vz", "T", "My", "Mz")


def numbers(count, most=None):
    return {"type": "array", "items": NUMBER, "minItems": count, "maxItems": most or count}


def array(items, least=0):
    return {"type": "array", "items": items, "minItems": least}


def record(optional=(), **members):
    return {"type": "object", "properties": members, "additionalProperties": False,
            "required": [name for name in members if name not in optional]}


VECTOR, TENSOR = numbers(3), numbers(6)
FORCES = {"force": VECTOR, "moment": VECTOR}
AXES = {"type": "array", "items": VECTOR, "minItems": 3, "maxItems": 3}
ELEMENT = {"element": INTEGER, "material": INTEGER, "nodes": array({"type": "integer", "minimum": 1}, 2)}
STATION = record(x=NUMBER, **{name: NUMBER for name in COMPONENTS}, u=VECTOR)
SHELL_POINT = record(x=VECTOR, n=VECTOR, m=VECTOR, q=numbers(2), top=TENSOR, bottom=TENSOR)
HEAD = {
    "schema": {"const": "kestol-result/1"},
    "deck": {"type": "string"},
    "units": record(force={"type": "string"}, length={"type": "string"}, pressure={"type": "string"}),
}
SOLVED = record(
    **HEAD,
    nodes=array(record(number={"type": "integer", "minimum": 1}, x=VECTOR, u=VECTOR, rotation=VECTOR), 1),
    beams=array(record(**ELEMENT, length=NUMBER, axes=AXES, stations=array(STATION, 2))),
    shells=array(record(**ELEMENT, axes=AXES, points=array(SHELL_POINT, 1))),
    solids=array(record(**ELEMENT, points=array(record(x=VECTOR, stress=TENSOR), 1))),
    nodalStresses=array(record(number=INTEGER, stress=TENSOR, vonMises=NUMBER)),
    reactions=array(record(("between", "inSupportAxes"), node=INTEGER,
                           between={"type": "array", "items": INTEGER, "minItems": 2, "maxItems": 2},
                           **FORCES, inSupportAxes=record(**FORCES), printed=numbers(3, 6))),
    equilibrium=record(loads=record(**FORCES), reactions=record(**FORCES), drilling=VECTOR,
                       relativeError=NUMBER),
)
MODEL = record(
    **HEAD,
    nodes=array(record(number={"type": "integer", "minimum": 1}, x=VECTOR), 1),
    beams=array(record(**ELEMENT, length=NUMBER, axes=AXES)),
    shells=array(record(**ELEMENT, axes=AXES)),
    solids=array(record(**ELEMENT)),
    supports=array(record(("euler",), node=INTEGER, codes=array(INTEGER, 3), values=numbers(3, 6),
                          euler=VECTOR)),
    hinges=array(record(element=INTEGER, end={"enum": [1, 2]})),
    loads=array(record(node=INTEGER, **FORCES)),
)


def main():
    program, *paths = sys.argv[1:]
    failures = Failures()
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        paths = [pathlib.Path(path) for path in paths]
        for seed in range(12):
            paths.append(work / f"random-{seed}.dat")
            paths[-1].write_text(decks.random_deck(seed), encoding="ascii")
        for path in paths:
            for schema, options in ((SOLVED, ()), (MODEL, ("--mesh-only",))):
                done = run(program, path, "--json", "-", *options)
                failures.expect(done.returncode == 0, path.name, done.stderr)
                try:
                    document = json.loads(done.stdout.decode("utf-8"))
                    jsonschema.validate(document, schema)
                    failures.expect(document["deck"] == str(path), path.name, "deck")
                except (ValueError, jsonschema.ValidationError) as refusal:
                    failures.expect(False, path.name, options, str(refusal).splitlines()[0])
    return failures.finish(f"{len(paths)} decks")


if __name__ == "__main__":
    sys.exit(main())

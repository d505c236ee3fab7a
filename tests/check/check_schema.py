"""check_schema.py KESTOL-CHECK DECK...: the JSON and SARIF documents of many decks, sound and wrong ones, are valid
after schemas of our own; the SARIF schema holds what the standard says of the parts that are used."""
import json
import sys

import jsonschema

from bases import BASES
from checker import Checker, Score
from frames import random_frame
from mistakes import MISTAKES, deck_of

NUMBER = {"type": ["number", "null"]}
VECTOR = {"type": "array", "items": NUMBER, "minItems": 3, "maxItems": 3}
NUMBERS = {"type": "array", "items": {"type": "integer", "minimum": 1}}


def record(required, optional=None):
    return {"type": "object", "properties": {**required, **(optional or {})},
            "required": sorted(required), "additionalProperties": False}


FORCES = record({"force": VECTOR, "moment": VECTOR})
FINDING = record({
    "code": {"type": "string", "pattern": "^[a-z-]+$"}, "severity": {"enum": ["error", "warning"]},
    "file": {"type": "string"}, "line": {"type": "integer", "minimum": 0},
    "column": {"type": "integer", "minimum": 0}, "endColumn": {"type": "integer", "minimum": 0},
    "text": {"type": "string", "minLength": 8}, "nodes": NUMBERS, "elements": NUMBERS})
MODE = record({
    "relativePivot": NUMBER, "text": {"type": "array", "items": {"type": "string"}, "minItems": 1},
    "motion": {"type": "object", "additionalProperties": False,
               "patternProperties": {"^[1-9][0-9]*$": record({"u": VECTOR, "rotation": VECTOR})}}})
REACTION = record(
    {"node": {"type": "integer", "minimum": 0}, "force": VECTOR, "moment": VECTOR,
     "printed": {"type": "array", "items": NUMBER, "minItems": 3, "maxItems": 6}},
    {"between": {"type": "array", "items": {"type": "integer"}, "minItems": 2, "maxItems": 2},
     "inSupportAxes": FORCES})
CHECK = record(
    {"schema": {"const": "kestol-check/1"}, "deck": {"type": "string"},
     "version": {"type": "string", "pattern": r"^\d+\.\d+\.\d+$"},
     "units": record({name: {"type": "string"} for name in ("force", "length", "pressure")}),
     "findings": {"type": "array", "items": FINDING}, "modes": {"type": "integer", "minimum": 0},
     "mechanisms": {"type": "array", "items": MODE}},
    {"reactions": {"type": "array", "items": REACTION},
     "equilibrium": record({"loads": FORCES, "reactions": FORCES, "drilling": VECTOR,
                            "relativeError": NUMBER}),
     "condition": NUMBER})

# SARIF 2.1.0: sections 3.13 to 3.30, as far as they are used.
TEXT = {"type": "object", "properties": {"text": {"type": "string", "minLength": 1}},
        "required": ["text"], "additionalProperties": False}
LEVEL = {"enum": ["none", "note", "warning", "error"]}
URI = record({"uri": {"type": "string", "format": "uri-reference",
                      "pattern": r"^[A-Za-z0-9._~/:%-]+$"}})
REGION = record({name: {"type": "integer", "minimum": 1}
                 for name in ("startLine", "startColumn", "endColumn")})
RESULT = record({
    "ruleId": {"type": "string"}, "ruleIndex": {"type": "integer", "minimum": 0}, "level": LEVEL,
    "message": TEXT,
    "locations": {"type": "array", "minItems": 1, "maxItems": 1, "items": record(
        {"physicalLocation": record({"artifactLocation": URI}, {"region": REGION})})}})
RULE = record({"id": {"type": "string"}, "shortDescription": TEXT,
               "defaultConfiguration": record({"level": LEVEL})})
SARIF = record({
    "$schema": {"type": "string", "format": "uri"}, "version": {"const": "2.1.0"},
    "runs": {"type": "array", "minItems": 1, "items": record({
        "tool": record({"driver": record({
            "name": {"const": "kestol-check"}, "version": {"type": "string"},
            "rules": {"type": "array", "items": RULE, "uniqueItems": True}})}),
        "invocations": {"type": "array", "minItems": 1, "maxItems": 1, "items": record(
            {"executionSuccessful": {"type": "boolean"}},
            {"toolExecutionNotifications": {"type": "array", "items": record(
                {"level": LEVEL, "message": TEXT})}})},
        "columnKind": {"enum": ["utf16CodeUnits", "unicodeCodePoints"]},
        "artifacts": {"type": "array", "items": record({"location": URI})},
        "results": {"type": "array", "items": RESULT}})}})


def check_sarif(score, text, findings, name):
    document = json.loads(text)
    jsonschema.validate(document, SARIF)
    run = document["runs"][0]
    score.equal(run["invocations"], [{"executionSuccessful": True}], name, "invocations")
    rules = [rule["id"] for rule in run["tool"]["driver"]["rules"]]
    score.equal(len(rules), len(set(rules)), name, "rules")
    score.equal([(r["ruleId"], r["level"], r["message"]["text"]) for r in run["results"]],
                [(f["code"], f["severity"], f["text"]) for f in findings], name, "results")
    for result, finding in zip(run["results"], findings):
        score.equal(rules[result["ruleIndex"]], result["ruleId"], name, "ruleIndex")
        region = result["locations"][0]["physicalLocation"].get("region")
        score.equal(region is not None, finding["line"] > 0, name, "region")
        if region:
            score.expect(region["endColumn"] > region["startColumn"], name, "width of the region")
            score.equal(region["startLine"], finding["line"], name, "line")


def check_deck(checker, score, path, name):
    document = checker.json(path)
    jsonschema.validate(document, CHECK)
    score.equal("reactions" in document, "equilibrium" in document, name, "solved")
    solved = document["modes"] == 0 and not any(f["severity"] == "error"
                                                for f in document["findings"])
    score.equal("reactions" in document, solved, name, "solved without errors")
    for finding in document["findings"]:
        score.expect(finding["line"] == 0 or finding["endColumn"] > finding["column"] > 0, name,
                     "columns", finding)
    check_sarif(score, checker.run("--format", "sarif", path).stdout, document["findings"], name)


def check_failed_sarif(checker, score):
    """A deck that cannot be read, or is no text: exit 2, and the document says why."""
    for path in ("/no/such/deck.dat", checker.folder.name, checker.write("", "empty.dat")):
        run = checker.run("--format", "sarif", path)
        score.equal(run.returncode, 2, path)
        document = json.loads(run.stdout)
        jsonschema.validate(document, SARIF)
        invocation = document["runs"][0]["invocations"][0]
        score.equal(invocation["executionSuccessful"], False, path)
        text = invocation["toolExecutionNotifications"][0]["message"]["text"]
        score.equal(run.stderr, f"kestol-check: error: {text}\n", path)


def main():
    checker, score = Checker(sys.argv[1]), Score()
    for path in sys.argv[2:]:
        check_deck(checker, score, path, path)
    check_failed_sarif(checker, score)
    for name, text in BASES.items():
        check_deck(checker, score, checker.write(text, "a deck #1 & so on.dat"), name)
    for row in MISTAKES:
        check_deck(checker, score, checker.write(deck_of(row)), row[:4])
    for seed in range(20):
        check_deck(checker, score, checker.write(random_frame(seed).deck()), seed)
    score.end()


if __name__ == "__main__":
    main()

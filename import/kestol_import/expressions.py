"""Expressions of x, y and z in a recipe: a small language of arithmetic that is never run as code.

The text is parsed into a tree; only the forms listed here are walked, everything else is refused.
"""

from __future__ import annotations

import ast
from collections.abc import Callable, Mapping
from functools import reduce
from typing import Any

import numpy as np

from .errors import plural
from .mesh import Reals

LONGEST = 1000  # characters; a formula that needs more is not one
FUNCTIONS: Mapping[str, tuple[int, int, Callable[..., Any]]] = {
    "sin": (1, 1, np.sin), "cos": (1, 1, np.cos), "tan": (1, 1, np.tan),
    "asin": (1, 1, np.arcsin), "acos": (1, 1, np.arccos), "atan": (1, 1, np.arctan),
    "atan2": (2, 2, np.arctan2), "hypot": (2, 2, np.hypot), "sqrt": (1, 1, np.sqrt),
    "exp": (1, 1, np.exp), "log": (1, 1, np.log), "log10": (1, 1, np.log10),
    "abs": (1, 1, np.abs), "min": (2, 8, lambda *a: reduce(np.minimum, a)),
    "max": (2, 8, lambda *a: reduce(np.maximum, a)),
}
LARGEST = 10 ** 300
CONSTANTS = {"pi": np.pi}
VARIABLES = ("x", "y", "z")
_BINARY: Mapping[type, Callable[[Any, Any], Any]] = {
    ast.Add: np.add, ast.Sub: np.subtract, ast.Mult: np.multiply, ast.Div: np.divide,
    ast.Pow: np.power, ast.Mod: np.mod}
_COMPARE: Mapping[type, Callable[[Any, Any], Any]] = {
    ast.Lt: np.less, ast.LtE: np.less_equal, ast.Gt: np.greater, ast.GtE: np.greater_equal}


class ExpressionError(Exception):
    """A sentence about what is wrong with an expression."""


class Expression:
    """A number, or a formula of x, y and z."""

    def __init__(self, source: float | str) -> None:
        self.source = source
        self._tree: ast.expr | None = None
        if isinstance(source, str):
            self._tree = parse(source)
            check(self._tree)

    def at(self, points: Reals) -> Reals:
        """Values (n,) at points (n, 3); ExpressionError where one is not finite."""
        if self._tree is None:
            return np.full(len(points), float(self.source))
        variables = dict(zip(VARIABLES, points.T))
        with np.errstate(all="ignore"):
            result = np.asarray(evaluate(self._tree, variables), np.float64)
        values = np.ascontiguousarray(np.broadcast_to(result, len(points)))
        wrong = np.flatnonzero(~np.isfinite(values))
        if len(wrong):
            x, y, z = points[wrong[0]]
            raise ExpressionError(f'"{self.source}" is {values[wrong[0]]} at '
                                  f"({x:g}, {y:g}, {z:g})")
        return values


def parse(text: str) -> ast.expr:
    if len(text) > LONGEST:
        raise ExpressionError(f"an expression has at most {LONGEST} characters")
    if "^" in text:
        raise ExpressionError(f'"{text}": a power is written as **')
    try:
        return ast.parse(text.strip(), mode="eval").body
    except (SyntaxError, ValueError, RecursionError, MemoryError):
        raise ExpressionError(f'"{text}" is no expression of x, y and z') from None


def check(node: ast.expr) -> None:
    """Refuses every form that is not arithmetic; the tree of a short text is not deep."""
    try:
        _check(node)
    except RecursionError:
        raise ExpressionError("the expression is nested too deeply") from None


def _check(node: ast.expr) -> None:
    if isinstance(node, ast.Constant):
        if type(node.value) not in (int, float):
            raise ExpressionError(f"{node.value!r} is not a number")
        if not abs(node.value) < LARGEST:
            raise ExpressionError("a number of the expression is too large")
    elif isinstance(node, ast.Name):
        if node.id not in VARIABLES and node.id not in CONSTANTS:
            raise ExpressionError(f'"{node.id}" is not known: x, y, z and pi are')
    elif isinstance(node, ast.Call):
        check_call(node)
    elif not allowed(node):
        raise ExpressionError(f'"{ast.unparse(node)}" is not arithmetic')
    for child in ast.iter_child_nodes(node):
        if isinstance(child, ast.expr) and not (isinstance(node, ast.Call) and child is node.func):
            _check(child)


def allowed(node: ast.expr) -> bool:
    if isinstance(node, ast.BinOp):
        return type(node.op) in _BINARY
    if isinstance(node, ast.UnaryOp):
        return isinstance(node.op, (ast.UAdd, ast.USub))
    if isinstance(node, ast.Compare):
        return all(type(op) in _COMPARE for op in node.ops)
    return isinstance(node, ast.IfExp)


def check_call(node: ast.Call) -> None:
    name = node.func.id if isinstance(node.func, ast.Name) else ast.unparse(node.func)
    if name not in FUNCTIONS:
        raise ExpressionError(f'function "{name}" is not known: {", ".join(FUNCTIONS)} are')
    least, most, _ = FUNCTIONS[name]
    plain = not node.keywords and not any(isinstance(a, ast.Starred) for a in node.args)
    if not plain or not least <= len(node.args) <= most:
        count = plural(least, "argument") if least == most else f"{least} to {most} arguments"
        raise ExpressionError(f'function "{name}" takes {count}')


def evaluate(node: ast.expr, variables: Mapping[str, Any]) -> Any:
    """The value of a checked tree, over whole arrays."""
    if isinstance(node, ast.Constant):
        return np.float64(node.value)
    if isinstance(node, ast.Name):
        return variables[node.id] if node.id in variables else np.float64(CONSTANTS[node.id])
    if isinstance(node, ast.UnaryOp):
        value = evaluate(node.operand, variables)
        return np.negative(value) if isinstance(node.op, ast.USub) else value
    if isinstance(node, ast.BinOp):
        return _BINARY[type(node.op)](evaluate(node.left, variables),
                                      evaluate(node.right, variables))
    if isinstance(node, ast.Compare):
        sides = [evaluate(side, variables) for side in (node.left, *node.comparators)]
        truth = [_COMPARE[type(op)](a, b) for op, a, b in zip(node.ops, sides, sides[1:])]
        return reduce(np.logical_and, truth) * np.float64(1)
    if isinstance(node, ast.IfExp):
        return np.where(np.asarray(evaluate(node.test, variables)) != 0,
                        evaluate(node.body, variables), evaluate(node.orelse, variables))
    assert isinstance(node, ast.Call) and isinstance(node.func, ast.Name)
    return FUNCTIONS[node.func.id][2](*(evaluate(a, variables) for a in node.args))

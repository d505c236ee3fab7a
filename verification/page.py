"""The pages of the manual: one for each problem, with its runs, its checks and its pictures."""
import inspect
import math

import pictures
import runs

DIGITS = "6 digits"     # equal in the six digits that the report prints
SOLVERS_AGREE = 1e-5    # of the largest displacement, as six printed digits show it

PROBLEMS = []


def problem(code, title, source, slow=False):
    """Registers a function of a Page as a problem of the manual; its docstring is the description."""
    def register(function):
        PROBLEMS.append(Problem(code, title, source, slow, function))
        return function
    return register


class Problem:
    def __init__(self, code, title, source, slow, function):
        self.code, self.title, self.source, self.slow = code, title, source, slow
        self.function = function
        self.family = {"B": "Beams", "S": "Shells", "T": "Solids"}[code[0]]

    def on(self, page):
        self.function(page)
        return page


class Page:
    """What a problem's function says about itself while it runs."""

    def __init__(self, problem_, program):
        self.problem, self.program = problem_, program
        self.decks = {}     # file name -> text
        self.pictures = {}  # file name -> text
        self.drawings = {}  # file name -> (deck, what kestol-view is to draw of it)
        self.captions = []
        self.rows = []      # (what, target, value, deviation, tolerance, verdict)
        self.worst = 0.0    # largest relative deviation where a tolerance is given as such
        self.solver_difference = 0.0
        self.failures = []

    # Runs

    def run(self, name, model, iterative_solver=runs.ITERATIVE):
        self.decks[f"{name}.dat"] = model.text(runs.DIRECT)
        return self.results(name, model, iterative_solver)

    def results(self, name, model, iterative_solver):
        """Those of the direct solver; the iterative one must agree with them."""
        direct = runs.run_program(self.program, model, runs.DIRECT)
        iterative = runs.run_program(self.program, model, iterative_solver)
        difference = runs.difference(direct, iterative)
        self.solver_difference = max(self.solver_difference, difference)
        if not difference <= SOLVERS_AGREE:
            self.failures.append(f"{name}: the solvers differ by {difference:.1e}")
        return direct

    # Checks

    def check(self, what, value, target, tolerance=DIGITS, digits=6):
        """`tolerance` is DIGITS or relative. `digits` are those of the published target."""
        deviation = (value - target) / abs(target) if target > 0 else (target - value) / abs(target)
        if tolerance == DIGITS:
            unit = 10.0 ** (math.floor(math.log10(abs(target))) - 5)
            good = abs(value - target) <= 0.5 * unit + 1e-6 * abs(target)
            shown, limit = "none" if good else f"{deviation:.1e}", DIGITS
        else:
            good = abs(deviation) <= tolerance
            shown, limit = percent(deviation), percent(tolerance, sign=False)
            self.worst = max(self.worst, abs(deviation))
        self.row(what, digits_of(target, digits), digits_of(value), shown, limit, good)

    def zero(self, what, value, scale, tolerance=1e-6):
        good = abs(value) <= tolerance * abs(scale)
        self.row(what, "0", "0" if good else f"{value:.3g}", "none" if good else "", "1e-6 of "
                 f"{abs(scale):.6g}", good)

    def show(self, what, value, target, digits=6):
        """For information: no verdict."""
        self.rows.append((what, digits_of(target, digits), digits_of(value),
                          percent(value / target - 1), "", "shown"))

    def row(self, what, target, value, deviation, tolerance, good):
        self.rows.append((what, target, value, deviation, tolerance, "pass" if good else "FAIL"))
        if not good:
            self.failures.append(f"{what}: {value} instead of {target}")

    # Pictures

    def drawing(self, deck, what, caption):
        """The deck `deck` as kestol-view draws it: `what` is model, deformed, N, V or M."""
        name = f"{self.problem.code}-{what}.svg"
        self.drawings[name] = self.decks[f"{deck}.dat"], what
        self.captions.append((name, caption))

    def convergence(self, caption, x_label, curves, **options):
        """Curves of ratios over the mesh, as a picture named after the problem."""
        name = f"{self.problem.code}-convergence.svg"
        self.pictures[name] = pictures.ratios(x_label, curves, **options).text()
        self.captions.append((name, caption))

    # The text

    def passed(self):
        return not self.failures

    def text(self):
        p = self.problem
        parts = [f"### {p.code} {p.title}", inspect.getdoc(p.function)]
        parts += [f"![{caption}](verification/{name})" for name, caption in self.captions]
        if self.rows:
            parts.append(table(("quantity", "target", "kestol", "deviation", "tolerance", ""),
                               self.rows))
        decks = ", ".join(f"[{name}](../verification/decks/{name})" for name in sorted(self.decks))
        parts.append(f"Source: {p.source}.")
        parts.append(f"Decks: {decks}.")
        parts += [f"**FAILED**: {failure}." for failure in self.failures]
        return "\n\n".join(parts) + "\n"

    def score(self):
        judged = [row for row in self.rows if row[5] != "shown"]
        return f"{sum(row[5] == 'pass' for row in judged)} of {len(judged)}"

    def summary(self, companions):
        """`companions`: the page of the same problem by the companions."""
        p = self.problem
        largest = percent(self.worst, sign=False) if self.worst > 0 else "none in 6 digits"
        return (f"[{p.code}](#{anchor(f'{p.code} {p.title}')})", p.title, self.score(), largest,
                "agree" if self.solver_difference <= SOLVERS_AGREE else "DIFFER",
                companions.score(), companions.balance(),
                "pass" if self.passed() and companions.passed() else "FAIL")


def digits_of(value, count=6):
    """All digits, zeros at the end too."""
    return f"{value:#.{count}g}".removesuffix(".")


def percent(ratio, sign=True):
    text = f"{100 * ratio:{'+' if sign else ''}.2f}"
    if float(text) == 0:
        text = "0.00"
    return text + " %"


def anchor(heading):
    """The anchor that renderers of this text form give a heading."""
    kept = (c for c in heading.lower() if c.isalnum() or c in " -_")
    return "".join(kept).replace(" ", "-")


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines)

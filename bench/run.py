#!/usr/bin/env python3
"""Times whole runs of kestol over models of growing size and writes their table into bench/README.md.

    bench/run.py PROGRAM [--largest EQUATIONS] [--only WORD]

Stages are told apart by the lines of the information stream, read as they come. Each model is run twice
and the shorter time of each stage counts: memory that the machine has not used for a while costs a first
run seconds per gigabyte. Times on a shared machine vary by 10 to 20 per cent.
"""
import argparse
import datetime
import math
import pathlib
import platform
import re
import subprocess
import sys
import tempfile
import time

import tables

HERE = pathlib.Path(__file__).resolve().parent

# name, generator, arguments, solvers
SPARSE, SKYLINE = "Sparse 1e-8 1e-6 100000", "SkyLine"
MODELS = [
    ("plane frame", "make_frame.py", [["20", "16", "1", "--plane"], ["65", "50", "1", "--plane"],
                                      ["103", "96", "1", "--plane"], ["184", "180", "1", "--plane"],
                                      ["321", "310", "1", "--plane"], ["577", "576", "1", "--plane"]]),
    ("space frame", "make_frame.py", [["6", "4", "4"], ["15", "9", "9"], ["25", "13", "13"],
                                      ["30", "16", "15"], ["40", "19", "19"], ["51", "30", "30"],
                                      ["78", "45", "45"]]),
    ("plate, 3 nodes", "make_plate.py", [["12"], ["40"], ["70"], ["128"], ["223"], ["407"]]),
    ("plate, 6 nodes", "make_plate.py", [["6", "--six"], ["20", "--six"], ["35", "--six"],
                                         ["64", "--six"], ["111", "--six"], ["203", "--six"]]),
    ("block, 4 nodes", "make_block.py", [["4"], ["9"], ["13"], ["20"], ["28"], ["43"]]),
    ("block, 10 nodes", "make_block.py", [["2", "--ten"], ["5", "--ten"], ["6", "--ten"],
                                          ["10", "--ten"], ["14", "--ten"], ["22", "--ten"]]),
]
# Largest number of equations that a solver is asked for: the direct one is bound by its profile.
LIMIT = {SKYLINE: 110_000, SPARSE: 2_000_000}
# From here on, times are long enough to be compared.
MANY = 90_000
GROWTH = """Doubling a model multiplies the time of a stage, and the peak memory, by (Sparse; the solution as the
time of one iteration; writing includes what the file system does):"""
# The line that ends each stage.
STAGES = [("read", "INFORMATION ABOUT STIFFNESS MATRIX"), ("assembly", "Load vector constructed"),
          ("solution", "Solver finished"), ("strengths", "End of calc strengths"),
          ("writing", "Total time")]


def run(program, deck):
    """Seconds per stage, peak MB, equations, iterations."""
    start = last = time.monotonic()
    process = subprocess.Popen([program, "-i", "-", deck.name, "report.txt"], cwd=deck.parent,
                               stdout=subprocess.PIPE, text=True)
    seconds, equations, iterations, positions, peak = {}, 0, None, 0, 0.0
    stages = list(STAGES)
    for line in process.stdout:
        if stages and line.startswith(stages[0][1]):
            now = time.monotonic()
            seconds[stages.pop(0)[0]] = now - last
            last = now
        peak = max(peak, peak_of(process.pid))
        if match := re.match(r"Degrees of freedom= (\d+)", line):
            equations = int(match.group(1))
        if match := re.match(r"Total number of positions= (\d+)", line):
            positions = int(match.group(1))
        if match := re.match(r"Converged it number\. (\d+)", line):
            iterations = int(match.group(1))
    if process.wait() != 0:
        sys.exit(f"{deck}: exit status {process.returncode}")
    seconds["total"] = time.monotonic() - start
    return seconds, peak, equations, iterations, positions


def peak_of(pid):
    """Largest memory so far of a process, in MB; 0 when it has just ended."""
    match = re.search(r"VmHWM:\s*(\d+)", pathlib.Path(f"/proc/{pid}/status").read_text())
    return int(match[1]) / 1024 if match else 0.0


def best_of_two(program, deck):
    """The shorter time of each stage; the rest is the same in both runs."""
    runs = []
    for _ in range(2):
        runs.append(run(program, deck))
        for result in deck.parent.glob("*.kestol.res"):
            result.unlink()
    first, second = (seconds for seconds, *_ in runs)
    return {stage: min(first[stage], second[stage]) for stage in first}, *runs[0][1:]


def rows(program, largest, only):
    with tempfile.TemporaryDirectory() as folder:
        for name, generator, sizes in MODELS:
            if only not in name:
                continue
            for size in sizes:
                deck = pathlib.Path(folder) / "model.dat"
                text = subprocess.run([sys.executable, str(HERE / generator), *size], check=True,
                                      stdout=subprocess.PIPE, text=True).stdout
                for solver in (SKYLINE, SPARSE):
                    deck.write_text(text.replace(
                        "\nTYPE 3d\n", f"\nTYPE 3d\nSolver: {solver}\n", 1).replace(
                        "\nTYPE 2d\n", f"\nTYPE 2d\nSolver: {solver}\n", 1))
                    count = equations_of(text)
                    if count > min(largest, LIMIT[solver]):
                        continue
                    yield name, solver.split()[0], best_of_two(program, deck)


def equations_of(text):
    """Equations before a conversion: nodes times degrees per node."""
    nodes = re.search(r"^ *coordinates\n(.*?)^ *end", text, re.DOTALL | re.MULTILINE)[1].count("\n")
    if "Tetrahedra" in text[:300] or "TYPE 2d" in text[:300]:
        return 3 * nodes
    return 6 * nodes * (4 if "ConvertTo6Nodes" in text[:300] else 1)


def table(results):
    """One line per run."""
    yield ("| model | equations | solver | read s | assembly s | solution s | strengths s | writing s "
           "| total s | peak MB | storage MB | iterations |")
    yield "|---|---|---|---|---|---|---|---|---|---|---|---|"
    for name, solver, (seconds, peak, equations, iterations, positions) in results:
        storage = positions * (8 if solver == "SkyLine" else 12) / 2**20
        stages = " | ".join(f"{seconds.get(stage, 0):.3g}" for stage, _ in STAGES)
        yield (f"| {name} | {equations} | {solver} | {stages} | {seconds['total']:.3g} | {peak:.0f} | "
               f"{storage:.1f} | {iterations or ''} |")


def growth(results):
    """What doubling a model does to each stage, from the first size of MANY equations to the last."""
    yield "| model | from | to | read | assembly | one iteration | strengths | writing | peak MB |"
    yield "|---|---|---|---|---|---|---|---|---|"
    for name in dict.fromkeys(result[0] for result in results):
        runs = [run for model, solver, run in results
                if model == name and solver == "Sparse" and run[2] >= MANY]
        if len(runs) < 2:
            continue
        (small, small_peak, m, small_steps, _), (large, large_peak, n, large_steps, _) = runs[0], runs[-1]
        ratios = [large[stage] / small[stage] for stage, _ in STAGES]
        ratios[2] *= small_steps / large_steps
        ratios.append(large_peak / small_peak)
        doublings = math.log2(n / m)
        yield (f"| {name} | {m} | {n} | " +
               " | ".join(f"{ratio ** (1 / doublings):.2f}" for ratio in ratios) + " |")


def processor():
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            return line.split(":", 1)[1].strip()
    return platform.machine()


def compiler():
    return subprocess.run(["c++", "--version"], stdout=subprocess.PIPE, text=True).stdout.splitlines()[0]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", type=pathlib.Path)
    parser.add_argument("--largest", type=int, default=1_200_000)
    parser.add_argument("--only", default="")
    arguments = parser.parse_args()
    results = []
    for result in rows(str(arguments.program.resolve()), arguments.largest, arguments.only):
        results.append(result)
        print(list(table([result]))[-1], flush=True)
    text = "\n".join([f"{processor()}; {compiler()}; {datetime.date.today()}; `bench/run.py`.", "",
                      *table(results), "", GROWTH, "", *growth(results)])
    if arguments.only:
        print(text)
        return
    tables.renew("whole runs", "run.py", text)


if __name__ == "__main__":
    main()

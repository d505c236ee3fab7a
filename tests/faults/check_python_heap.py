"""Every allocation of the Python module failing: LD_PRELOAD=LIBRARY check_python_heap.py LIBRARY

A script lives on when there is no memory: each call ends with MemoryError or with its answer, the
next one is not harmed, and no file is left.
"""
import ctypes
import pathlib
import sys
import tempfile

import kestol
from faulty import INPUTS, numbers


def work(folder):
    """What a script does with a model; all that it learns, as one value."""
    model = kestol.read(folder / "portal.dat")
    results = kestol.solve(model, solver="skyline")
    results.to_vtu(folder / "out.vtu")
    written = (folder / "out.vtu").read_bytes(), (folder / "out_diagrams.vtu").read_bytes()
    found = kestol.check(folder / "mistakes.dat")
    sums = kestol.combine(model, {"W": folder / "wind.dat"}, {"both": {"W": 1.5}}, solver="skyline")
    return (results.to_json(), results.to_csv("beams"), results.displacements.tobytes(), written,
            [str(finding) for finding in found], sums.envelope("Mz").max.tobytes())


def main():
    library = ctypes.CDLL(sys.argv[1])
    library.kestol_allocations.restype = ctypes.c_long
    failures = told = 0
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        for name, text in INPUTS.items():
            (folder / name).write_text(text)

        def attempt(number, once):
            library.kestol_fail_allocation(ctypes.c_long(number), once)
            try:
                return work(folder)
            except MemoryError:
                return None
            finally:
                library.kestol_fail_allocation(ctypes.c_long(0), 0)

        sound = work(folder)
        library.kestol_fail_allocation(ctypes.c_long(0), 0)
        assert work(folder) == sound
        last = library.kestol_allocations()
        for once in (0, 1):
            for number in numbers(last, 1500):
                for old in folder.glob("out*"):
                    old.unlink()
                found = attempt(number, once)
                told += found is None
                left = sorted(path.name for path in folder.glob("*.tmp"))
                if found not in (None, sound) or left:
                    failures += 1
                    print("FAILED: allocation", number, "of", last, "once" if once else "", left)
        if work(folder) != sound:
            failures += 1
            print("FAILED: the answer behind all that")
    print(f"{told} times without memory, {failures} failures")
    sys.exit(1 if failures or told < 1000 else 0)


if __name__ == "__main__":
    main()

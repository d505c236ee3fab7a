"""Every allocation of a companion failing: check_heap.py LIBRARY PROGRAM SECONDS

Once with all later ones, as when memory is exhausted, and once alone, which shows a failure that
something swallows. The run ends as told, with nothing left, or as if nothing had been.
"""
import sys

from faulty import CASES, Machine, numbers

WORDS = "Not space available on heap"
# So the library that reads TOML tells of a single failure that its streams swallowed.
SWALLOWED = b"could not be interpreted as a value"


def check(machine, arguments, seconds):
    clean, allocations, _, pace = machine.counts(arguments)
    told = 0
    # The library that composes the help swallows single failures, and a part of the text with them.
    modes = [{}] if "--help" in arguments else [{}, {"KESTOL_FAIL_ONCE": "1"}]
    for mode in modes:
        for number in numbers(allocations, max(12, int(seconds / 2 / pace))):
            end = machine.run(arguments, {**mode, "KESTOL_FAIL_AT": str(number)})
            if end == clean:
                continue
            good = machine.told_once(end, clean, WORDS) and not end.files
            if mode and not end.files and end.status == 2 and SWALLOWED in end.err:
                continue
            told += good
            machine.expect(good, arguments, mode, "allocation", number, "of", allocations, "status",
                           end.status, end.err[-300:], sorted(end.files))
    machine.expect(told >= 10, arguments, "told only", told)
    return told


def main():
    library, program, seconds = sys.argv[1:]
    machine = Machine(program, library)
    cases = CASES[machine.name]
    # The first case is the richest one.
    told = sum(check(machine, arguments, float(seconds) * (0.4 if k == 0 else 0.6 / (len(cases) - 1)))
               for k, arguments in enumerate(cases))
    machine.finish(f"{told} runs without memory told")


if __name__ == "__main__":
    main()

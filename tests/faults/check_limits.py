"""A companion in an address space that is too small: check_limits.py PROGRAM

Between the room that the loader needs and the room for the whole run it says that there is none,
and ends: neither by a signal nor never.
"""
import signal
import sys

from faulty import CASES, Machine, little_memory

WORDS = "Not space available on heap"
LOADER = b"error while loading shared libraries"


def is_before_the_program(machine, end, little):
    """Whether the loader, or a library that is made ready before the program, has no room."""
    if end.files:
        return False
    if end.status == 127:
        return LOADER in end.err
    return end.status == -signal.SIGSEGV and machine.run(["--version"], preexec_fn=little).status == end.status


def is_told_by_mpi(machine, end, little):
    """Whether the MPI library has no room of its own, before the program or within it."""
    start = machine.run(["--version"], preexec_fn=little)
    return end.status != "hangs" and not end.files and (bool(start.status or start.err) or b"opal_" in end.err)


def main():
    machine = Machine(sys.argv[1])
    arguments = CASES[machine.name][0]
    clean = machine.run(arguments)
    told, mebibytes = 0, 8  # with less the system cannot even start it
    step = 12 if machine.name == "kestol-mpi" else 2  # that one needs half a second to start
    while mebibytes < 4096:
        mebibytes += step if mebibytes < 400 else 64
        little = little_memory(mebibytes)
        end = machine.run(arguments, preexec_fn=little)
        if end == clean:
            break
        if machine.name == "kestol-mpi" and is_told_by_mpi(machine, end, little):
            continue
        if is_before_the_program(machine, end, little):
            continue
        good = machine.told_once(end, clean, WORDS) and not end.files
        told += good
        machine.expect(good, mebibytes, "MiB: status", end.status, end.err[-300:], sorted(end.files))
    machine.expect(end == clean, "does not run in", mebibytes, "MiB")
    machine.expect(told > 5, "said only", told, "times that there is no memory")
    machine.finish(f"{told} times without memory, sound with {mebibytes} MiB")


if __name__ == "__main__":
    main()

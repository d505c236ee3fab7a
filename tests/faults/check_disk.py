"""A disk that is full from every call on, and a signal at every call: check_disk.py LIBRARY PROGRAM"""
import re
import sys

from faulty import CASES, Machine, usual_signals

PLACES = r"\b(out[\w.-]*|standard output): "


def check_full(machine, arguments, clean, calls):
    for number in range(1, calls + 1):
        end = machine.run(arguments, {"KESTOL_FULL_AT": str(number)})
        if end == clean and not (clean.files or clean.out):
            continue  # nothing was lost
        told = end.err.decode("utf-8", "replace").splitlines()
        named = bool(told) and re.search(PLACES, told[-1])
        machine.expect(machine.told_once(end, clean, "") and named, arguments, "full at", number, "of",
                       calls, "status", end.status, end.err[-300:])
        machine.expect(not end.files, arguments, "full at", number, "leaves", sorted(end.files))


def check_signals(machine, arguments, clean, calls):
    for number in range(1, calls + 1, 3 if machine.name == "kestol-mpi" else 1):  # that one starts slowly
        for name in machine.ending if number % 7 == 1 else machine.ending[-1:]:
            end = machine.run(arguments, {"KESTOL_SIGNAL_AT": str(number), "KESTOL_SIGNAL": str(int(name))},
                              preexec_fn=usual_signals)
            machine.expect(end.status == -name, arguments, name, "at", number, "ends with", end.status)
            machine.expect(end.files in ({}, clean.files), arguments, name, "at", number, "of", calls,
                           "leaves", sorted(end.files))
        if number % 5 == 1:  # nobody can take anything away here, but no file has its name too early
            end = machine.run(arguments, {"KESTOL_SIGNAL_AT": str(number), "KESTOL_SIGNAL": "9"})
            named = {name: text for name, text in end.files.items() if not name.endswith(".tmp")}
            machine.expect(named.items() <= clean.files.items(), arguments, "killed at", number, "leaves",
                           sorted(end.files))


def main():
    library, program = sys.argv[1:]
    machine = Machine(program, library)
    tried = 0
    for arguments in CASES[machine.name]:
        clean, _, calls, _ = machine.counts(arguments)
        machine.expect(calls > 0 or not (clean.files or clean.out), arguments, "no call of the disk is seen")
        check_full(machine, arguments, clean, calls)
        if clean.files:
            check_signals(machine, arguments, clean, calls)
        tried += calls
    machine.finish(f"{tried} calls of the disk failed")


if __name__ == "__main__":
    main()

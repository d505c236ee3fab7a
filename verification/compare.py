"""Text against text: words to the letter, numbers to one unit of their last printed digit (the last
digit may turn over with another compiler)."""
import re

NUMBER = re.compile(r"[-+]?\d+\.\d+(?:e[-+]?\d+)?|[-+]?\d+(?:e[-+]?\d+)?")
AT_MOST = 3  # differences that are named for one file


def last_unit(number):
    """One unit of the last digit of a number as printed; whole numbers count to six digits."""
    mantissa, _, exponent = number.partition("e")
    digits = len(mantissa.partition(".")[2])
    if digits or exponent:
        return 10.0 ** (int(exponent or 0) - digits)
    return 1.0 if len(mantissa.lstrip("+-")) >= 6 else 0.0


def equal_lines(a, b):
    if a == b:
        return True
    if NUMBER.sub("#", a) != NUMBER.sub("#", b):
        return False
    return all(abs(float(p) - float(q)) <= 1.01 * max(last_unit(p), last_unit(q))
               for p, q in zip(NUMBER.findall(a), NUMBER.findall(b)))


def differences(name, there, new):
    """A line for each of the first differences."""
    old_lines, new_lines = there.splitlines(), new.splitlines()
    count = 0
    for i, (a, b) in enumerate(zip(old_lines, new_lines), 1):
        if not equal_lines(a, b):
            count += 1
            if count <= AT_MOST:
                yield f"{name}: line {i}\n  there: {a}\n  now:   {b}"
    if len(old_lines) != len(new_lines):
        yield f"{name}: {len(old_lines)} lines there, {len(new_lines)} now"


def section(manual, code):
    """The part of the manual below the heading of one problem."""
    start = manual.find(f"### {code} ")
    if start < 0:
        return ""
    ends = [end for end in (manual.find("\n### ", start), manual.find("\n## ", start)) if end > 0]
    return manual[start:min(ends, default=len(manual))]

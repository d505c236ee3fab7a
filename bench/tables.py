"""Tables of bench/README.md that the programs of this folder write."""
import pathlib

README = pathlib.Path(__file__).resolve().parent / "README.md"


def table(head, rows):
    """Lines of a table."""
    return ["| " + " | ".join(head) + " |", "|" + "---|" * len(head),
            *("| " + " | ".join(cells) + " |" for cells in rows)]


def renew(what, script, text):
    """Replaces what stands between the marks of a table."""
    begin, end = f"<!-- {what}: written by bench/{script} -->", f"<!-- end of {what} -->"
    before, rest = README.read_text().split(begin)
    _, after = rest.split(end)
    README.write_text(f"{before}{begin}\n{text}\n{end}{after}")

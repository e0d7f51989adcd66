"""The colour table kyv.clr."""

from .tables import rows

MAX_NAME = 19


def make(facts):
    """The fill colours in order, END, then the other colours."""
    table = rows(facts / "colors.csv")
    fill = [row for row in table if row["group"] == "fill"]
    extra = [row for row in table if row["group"] != "fill"]
    lines = ["# Colour table: name #RRGGBB. The colours above END are the fill colours, weak before strong.",
             *map(line, fill), "END", *map(line, extra)]
    yield "kyv.clr", "\n".join(lines) + "\n"


def line(row):
    """Hexadecimal, because the thousandths of the table do not give every byte value back."""
    if len(row["name"]) > MAX_NAME:
        raise ValueError(f"colour name too long: {row['name']}")
    return f"{row['name']} {row['hex']}"

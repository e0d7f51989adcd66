"""Reading of the CSV tables of facts, and number texts."""

import csv


def rows(path):
    """The rows of a CSV file with a header line, as dictionaries of text."""
    with open(path, newline="", encoding="utf-8") as stream:
        return list(csv.DictReader(stream))


def number(value, decimals=4):
    """The shortest decimal form: no exponent, no trailing zeros, no negative zero."""
    text = f"{float(value):.{decimals}f}".rstrip("0").rstrip(".")
    return "0" if text == "-0" else text

"""The symbol file wx.smb: storm and marker symbols, and present-weather signs.

A symbol lies in the unit box, (0.5, 0.5) being its anchor when it is drawn centred.
"""

import textwrap

from .hershey import read_face
from .tables import number

# As the storm overlay and the marker types name and draw them.
MARKERS = {
    "tri": "0,0 1,0 0.5,1 0,0 L",
    "itri": "0,1 1,1 0.5,0 0,1 L",
    "plus": "0,0.5 1,0.5 L 0.5,0 0.5,1 L",
    "circle": "1,0.5 0.933,0.75 0.75,0.933 0.5,1 0.25,0.933 0.067,0.75 0,0.5 0.067,0.25 0.25,0.067 0.5,0 "
              "0.75,0.067 0.933,0.25 1,0.5 L",
    "pnt": "0.5,0.5 0.6,0.5 0.6,0.6 0.5,0.6 0.5,0.5 L",
    "star": "0,0.5 1,0.5 L 0,0 1,1 L 0.5,1 0.5,0 L 1,0 0,1 L",
    "x": "0,0 1,1 L 1,0 0,1 L",
    "sqr": "0,1 1,1 1,0 0,0 0,1 L",
    "dot": "0.5,0.5 0.55,0.55 L",
    "z": "0.5,1 0.75,0.5 0.25,0.5 0.5,0 L",
}

FACE = "meteorology"

# A weather sign: the glyphs that it is made of, each with the centre and the longer side of its box, then its own
# strokes where the face has no glyph. The shapes are those of the international present-weather code.
WEATHER = {
    "drizzle": ([("!", 0.5, 0.5, 0.6)], ""),
    "rain": ([('"', 0.5, 0.5, 0.4)], ""),
    "snow": ([("#", 0.5, 0.5, 0.8)], ""),
    "icepellet": ([('"', 0.5, 0.37, 0.2)], "0.05,0.1 0.95,0.1 0.5,0.9 0.05,0.1 L"),
    "hail": ([], "0.05,0.1 0.95,0.1 0.5,0.9 0.05,0.1 L"),
    "shower": ([], "0.05,0.9 0.95,0.9 0.5,0.1 0.05,0.9 L"),
    "rainshower": ([('"', 0.5, 0.83, 0.3)], "0.1,0.6 0.9,0.6 0.5,0 0.1,0.6 L"),
    "snowshower": ([("#", 0.5, 0.82, 0.36)], "0.1,0.6 0.9,0.6 0.5,0 0.1,0.6 L"),
    "hailshower": ([], "0.3,0.66 0.7,0.66 0.5,1 0.3,0.66 L 0.1,0.6 0.9,0.6 0.5,0 0.1,0.6 L"),
    "thunder": ([("|", 0.5, 0.5, 1)], ""),
    "fog": ([], "0,0.75 1,0.75 L 0,0.5 1,0.5 L 0,0.25 1,0.25 L"),
    "haze": ([("_", 0.5, 0.5, 1)], ""),
    "dust": ([("^", 0.5, 0.5, 0.9)], ""),
    "smoke": ([("`", 0.5, 0.5, 1)], ""),
    "tropstorm": ([("~", 0.5, 0.5, 1)], ""),
}


def make(facts):
    face = read_face(facts / "hershey" / f"{FACE}.jhf")
    symbols = dict(MARKERS)
    for name, (glyphs, strokes) in WEATHER.items():
        parts = [glyph_strokes(face[character], *box) for character, *box in glyphs]
        symbols[name] = " ".join(part for part in [*parts, strokes] if part)
    # The file is a stream of words; the lines are for people.
    lines = [line for name, text in symbols.items()
             for line in textwrap.wrap(f"{name} {text} $", 78, subsequent_indent="  ", break_on_hyphens=False)]
    yield "wx.smb", "\n".join(lines) + "\n"


def glyph_strokes(glyph, x0, y0, size):
    """A glyph, scaled so that the longer side of its ink is size, centred on (x0, y0)."""
    points = [point for stroke in glyph.strokes for point in stroke]
    (xmin, xmax), (ymin, ymax) = ((min(side), max(side)) for side in zip(*points))
    scale = size / max(xmax - xmin, ymax - ymin)
    words = []
    for stroke in glyph.strokes:
        words += [f"{number(x0 + (x - (xmin + xmax) / 2) * scale, 3)},{number(y0 - (y - (ymin + ymax) / 2) * scale, 3)}"
                  for x, y in stroke]
        words.append("L")
    return " ".join(words)

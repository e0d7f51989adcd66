"""Stroke fonts out of the Hershey faces, the font list and the faces' licence."""

from .hershey import FACE_CHARACTERS, read_face

FONTS = {  # font: Hershey face
    "modern": "rowmans",
    "light": "futural",
    "duplex": "rowmand",
    "bold": "futuram",
    "roman": "timesr",
    "romanbold": "timesrb",
    "italic": "timesi",
    "script": "scripts",
    "greek": "greeks",
    "gothic": "gothiceng",
    "meteorology": "meteorology",
    "markers": "markers",
}

ALIASES = {  # further keys of the font list
    "simplex": "modern",
    "sans": "light",
    "sansbold": "bold",
    "serif": "roman",
    "serifbold": "romanbold",
    "complex": "roman",
    "cursive": "script",
    "symbol": "greek",
    "weather": "meteorology",
    "marker": "markers",
}

# 21 Hershey units from the baseline to the top of the capitals are 105 font units, one text height.
UNIT = 5
BASELINE = 9       # y of the baseline in Hershey units; y grows downward there
BASELINE_CY = 35   # and in font units, where y grows upward
SPACING = 25       # font units that the text adds after each character
MAX_X = 125        # a move has the code x + 128, and 254 and 255 are taken
MOVE = 128


def make(facts):
    folder = facts / "hershey"
    for font, face in FONTS.items():
        yield f"{font}.fnt", font_text(read_face(folder / f"{face}.jhf"))
    keys = {font: font for font in FONTS} | ALIASES
    yield "kyv.fnl", "".join(f"{key} {font}.fnt\n" for key, font in keys.items())
    licence = (folder / "LICENCE.txt").read_text(encoding="ascii")
    _, _, terms = licence.partition("\n\n")
    yield "HERSHEY-LICENCE.txt", ("The *.fnt files and the weather signs of wx.smb in this folder are converted from "
                                  "the Hershey fonts.\nTheir licence:\n\n" + terms)


def font_text(face):
    """One line for each character, first the introducing 0, last the end code 254."""
    lines = [f"{character} " + " ".join(f"{x} {y}" for x, y in codes)
             for character in FACE_CHARACTERS if (codes := character_codes(face[character]))]
    # A reader puts its closing separator over the last entry: spend a move that draws nothing.
    lines[-1] += f" {MOVE} {BASELINE_CY}"
    return "0 " + "\n255 ".join(lines) + "\n 254\n"


def character_codes(glyph):
    """(x, y) codes; empty for a glyph without strokes.

    The width of a character is the largest x of its codes, and every character is followed by SPACING. So the left
    bearing gives up half of the spacing, and a closing move that draws nothing sets the advance where the ink is
    narrower. Ink wider than MAX_X is squeezed.
    """
    points = [point for stroke in glyph.strokes for point in stroke]
    if not points:
        return []
    xmin = min(x for x, _ in points)
    ink = UNIT * (max(x for x, _ in points) - xmin)
    squeeze = min(1, MAX_X / ink) if ink else 1
    left = min(max(0, UNIT * (xmin - glyph.left) - SPACING // 2), MAX_X - round(ink * squeeze))
    codes = []
    for stroke in glyph.strokes:
        for i, (x, y) in enumerate(stroke):
            cx = left + round(UNIT * (x - xmin) * squeeze)
            cy = BASELINE_CY + UNIT * (BASELINE - y)
            codes.append((cx if i else cx + MOVE, cy))
    width = min(UNIT * (glyph.right - glyph.left) - SPACING, MAX_X)
    if width > left + round(ink * squeeze):
        codes.append((width + MOVE, BASELINE_CY))
    return codes

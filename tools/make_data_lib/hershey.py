"""Reader of Hershey faces in the .jhf form."""

from typing import NamedTuple

# A face holds a line for each character from the blank on. A font file cannot define the blank, and texts end at '~'.
FACE_CHARACTERS = [chr(code) for code in range(33, 127)]


class Glyph(NamedTuple):
    """Hershey units, x to the right, y downward, origin in the middle of the glyph."""
    left: int
    right: int
    strokes: list  # of lists of (x, y)


def read_face(path):
    """Glyphs by character."""
    lines = path.read_text(encoding="ascii").split("\n")
    if len(lines) <= len(FACE_CHARACTERS):
        raise ValueError(f"{path}: {len(lines)} lines are too few for a face")
    return {character: read_glyph(line) for character, line in zip(FACE_CHARACTERS, lines[1:])}


def read_glyph(line):
    """Columns 1-5 number, 6-8 count of pairs, then the pairs, the bearings first; "blank R" lifts the pen."""
    count = int(line[5:8])
    text = line[8:8 + 2 * count].ljust(2 * count)
    pairs = [text[i:i + 2] for i in range(0, 2 * count, 2)]
    strokes = [[]]
    for pair in pairs[1:]:
        if pair == " R":
            strokes.append([])
        else:
            strokes[-1].append((ord(pair[0]) - ord("R"), ord(pair[1]) - ord("R")))
    return Glyph(ord(pairs[0][0]) - ord("R"), ord(pairs[0][1]) - ord("R"), [s for s in strokes if s])

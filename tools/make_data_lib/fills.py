"""Fill scales: one .fil file for each scale."""

import math
import textwrap

from .tables import number, rows

# The reader takes lines of 80 characters, newline included.
MAX_LINE = 78

# The reader keeps 19 characters of a scale's name.
SHORT_NAMES = {
    "default_precip_digital": "default_digital",
    "default_reflectivity": "default_ref",
    "toolkit_precip_total": "toolkit_total",
}

# The threshold tables list coloured entries only. The default scales also have ranges that are not drawn: all below
# the first colour, or the calm middle of a velocity scale. The second field is the label of that entry.
OFF = {
    "default_reflectivity": ("-100", ""),
    "default_vil_tops": ("-100", ""),
    "default_srm": ("-1", ""),
    "default_velocity": ("0", ""),
    "default_zdr": ("0", ""),
    "default_precip_digital": ("-100", ""),
    "default_hydro": ("-100", "_"),
    "default_correlation": ("-200", ""),
}

# The classes of this scale label those of the default scale too.
CLASS_LABELS = "nws_hydro"
CLASS_USERS = ("nws_hydro", "default_hydro")

# Scales in data levels whose negative levels name the slower end of their class (-50 stands for -63 to -50).
LEVEL_SCALES = ("nws_vel", "fmh_vel16", "fmh_srm16")
FASTEST_INBOUND = -200  # kt, beyond what a radar can measure

# Correlation comes in percent there, in units of 1 from the products.
PERCENT_SCALES = ("toolkit_cc",)

DEFAULT_PREFIX = "default_"

# A gradient step changes no colour component by more than this.
GRADIENT_STEP = 48


def make(facts):
    scales = {}
    for row in rows(facts / "fill_scales.csv"):
        if row["scale"] in PERCENT_SCALES:
            row |= {"threshold": float(row["threshold"]) / 100, "units": "correlation, 0 to 1"}
        scales.setdefault(row["scale"], []).append(row)
    labels = {float(row["threshold"]): row["label"].split()[0] for row in scales[CLASS_LABELS]}
    for name, table in scales.items():
        items = entries(name, table, labels)
        yield f"{name}.fil", scale_text(name, table, items)
        if name in LEVEL_SCALES:
            yield f"{name}_digital.fil", scale_text(f"{name}_digital", table, digital(items),
                                                    "The classes by their ends, for digital products.")


def entries(name, table, labels):
    """(threshold, colour, label) in rising order."""
    if table[0]["kind"] == "gradient":
        return gradient(table)
    # The default scales follow the colour table, so they name their colours.
    colour = "label" if name.startswith(DEFAULT_PREFIX) else "hex"
    result = [(float(row["threshold"]), row[colour],
               labels[float(row["threshold"])] if name in CLASS_USERS else "") for row in table]
    if name in OFF:
        threshold, label = OFF[name]
        result.append((float(threshold), "off", label))
    return sorted(result, key=lambda entry: entry[0])


def gradient(table):
    """The colours of a gradient with the steps between them.

    Where two rows share a threshold the colour jumps: the first is only approached, the second holds from there on.
    Steps are labelled "_", so that the colour bar shows the listed thresholds alone.
    """
    points = [(float(row["threshold"]), [int(row["hex"][i:i + 2], 16) for i in (1, 3, 5)]) for row in table]
    result = []
    for (low, first), (high, last) in zip(points, points[1:]):
        if low == high:
            continue
        steps = max(1, math.ceil(max(abs(a - b) for a, b in zip(first, last)) / GRADIENT_STEP))
        for step in range(steps):
            part = step / steps
            rgb = [round(a + (b - a) * part) for a, b in zip(first, last)]
            result.append((low + (high - low) * part, "#%02X%02X%02X" % tuple(rgb), "_" if step else ""))
    result.append((points[-1][0], "#%02X%02X%02X" % tuple(points[-1][1]), ""))
    return result


def digital(levels):
    """Moves each negative class to the first whole knot after the next faster one."""
    starts = [FASTEST_INBOUND] + [threshold + 1 for threshold, _, _ in levels]
    return [(start if threshold < 0 else threshold, colour, label)
            for start, (threshold, colour, label) in zip(starts, levels)]


def scale_text(name, table, items, *remarks):
    first = table[0]
    own = name.startswith(DEFAULT_PREFIX)
    source = "The program's own scale, in the colours of the colour table" if own else first["source"]
    notes = [f"Units: {first['units'] or '1'}", source, first["note"], *remarks]
    if first["kind"] == "class":
        notes.append("Classes: " + ", ".join(row["label"] for row in table) + ".")
    lines = [f"# {part}" for note in notes if note for part in textwrap.wrap(note, MAX_LINE - 2)]
    lines.append(f"@name {SHORT_NAMES.get(name, name)}")
    lines += [f"{number(threshold)}:{colour}" + (f":la={label}" if label else "")
              for threshold, colour, label in items]
    return "\n".join(lines) + "\n"

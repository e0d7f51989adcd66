"""The domain text of the map that shows a box of the earth, borders and all."""

import math

EARTH = 63.7122  # mean radius, units of 100 km
COLUMNS, ROWS = 25, 17  # points of the standard map grid
MARGIN = 1.06
SAMPLES = 100  # points along each side of a box


def domain_text(kind, south, north, west, east):
    """kind is "ps" (polar stereographic, true at 60 degrees) or "merc"; east > west, beyond 180 where need be."""
    middle = (west + east) / 2
    forward, latitude = PROJECTIONS[kind]
    hemisphere = -1 if south + north < 0 else 1
    side = [i / SAMPLES for i in range(SAMPLES + 1)]
    border = [(lat, west + (east - west) * part) for part in side for lat in (south, north)]
    border += [(south + (north - south) * part, lon) for part in side for lon in (west, east)]
    xs, ys = zip(*(forward(lat, lon - middle, hemisphere) for lat, lon in border))
    step = MARGIN * max((max(xs) - min(xs)) / (COLUMNS - 1), (max(ys) - min(ys)) / (ROWS - 1))
    centre = latitude((min(ys) + max(ys)) / 2, hemisphere)
    middle = (middle + 180) % 360 - 180
    return f"{kind},{centre:.2f},{middle:.2f},{COLUMNS},{ROWS},{step:.4f},{step:.4f}"


def stereo(lat, lon, hemisphere):
    radius = stereo_factor() * math.tan(math.radians((90 - hemisphere * lat) / 2))
    return radius * math.sin(math.radians(lon)), -hemisphere * radius * math.cos(math.radians(lon))


def stereo_latitude(y, hemisphere):
    return hemisphere * (90 - 2 * math.degrees(math.atan(abs(y) / stereo_factor())))


def stereo_factor():
    return (1 + math.sin(math.radians(60))) * EARTH


def mercator(lat, lon, _):
    return EARTH * math.radians(lon), EARTH * math.log(math.tan(math.radians(45 + lat / 2)))


def mercator_latitude(y, _):
    return 2 * math.degrees(math.atan(math.exp(y / EARTH))) - 90


PROJECTIONS = {"ps": (stereo, stereo_latitude), "merc": (mercator, mercator_latitude)}

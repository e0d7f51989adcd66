"""The map files: line maps and places in the binary form, and the default map list."""

import struct

from .tables import rows

# Map file: its facts. Two resolutions where it pays: 1:50 million for continents, the finer ones near a radar.
LINES = {
    "coast_50m": "coast_50m",
    "borders_50m": "borders_50m",
    "provinces_50m": "provinces_50m",
    "lakes_50m": "lakes_50m",
    "rivers_50m": "rivers_50m",
    "land_50m": "land_50m",
    "urban_50m": "urban_50m",
    "coast": "coast_10m_radar",
    "coast_foreign": "coast_10m_foreign",
    "borders": "borders_10m_radar",
    "borders_foreign": "borders_10m_foreign",
    "lakes": "lakes_10m",
    "rivers": "rivers_10m",
    "us_states": "us_states_nws",
    "us_states_low": "us_states_10m",
    "us_counties": "us_counties_nws",
    "us_counties_low": "us_counties_10m",
    "us_cwa": "us_cwa_nws",
    "us_interstates": "us_interstates",
    "us_highways": "us_highways",
    "us_state_highways": "us_state_highways",
    "ca_provinces": "ca_provinces",
    "mx_states": "mx_states",
}

# The rest of the world at the scale of a radar: the coarse lines where the fine ones end, so that none is drawn twice.
# Of provinces only those of Canada and the United States have fine lines; their others lie south of 6 degrees north.
WORLD = {
    "coast_world": ("coast_50m", "coast_10m_radar", 90.0),
    "borders_world": ("borders_50m", "borders_10m_radar", 90.0),
    "lakes_world": ("lakes_50m", "lakes_10m", 90.0),
    "provinces_world": ("provinces_50m", "ca_provinces", 6.0),
}
SAME = 0.2  # degrees within which a coarse and a fine line are the same
LONGEST = 3.0  # degrees of a segment, so that it is passed over where the map does not show it

# Places by the rank of the facts, large ones first: file and the ranks that it holds.
CITIES = (("cities_1", range(0, 3)), ("cities_2", range(3, 6)), ("cities_3", range(6, 8)), ("cities_4", range(8, 11)))

LABEL = 1  # feature code of a place
LONG = 65535  # a count that goes on in the next halfword
MAX_NAME = 49

DEFAULT_LIST = """\
# The default map list: an entry a word. "-" under the data, "+" over them, neither: after the image, where both are
# drawn. s-8: on maps less than 800 km high, [0,12,75,-180,-50] with their centre within these latitudes and longitudes.
# docs/maps.md tells the rest.

# Continents and the world
s+25:coast_50m:gray
s+25:lakes_50m:dgray
s+25:borders_50m:gray
s+25:s-130:provinces_50m:dgray

# The rest of the world near by, where the fine maps of radars end
s-25:lakes_world:dcyan
s-25:provinces_world:dgray
s-25:borders_world:gray
s-25:coast_world:lgray

# North America: the United States by their counties, states and roads
s-3:[0,12,75,-180,-50]us_highways:brown
s-12:[0,12,75,-180,-50]us_interstates:lbrown
s-6:[0,12,75,-180,-50]us_counties:dgray
s+6:s-12:[0,12,75,-180,-50]us_counties_low:dgray
s-25:[0,12,75,-180,-50]lakes:dcyan
s-25:[0,12,75,-180,-50]mx_states:gray
s-25:[0,12,75,-180,-50]ca_provinces:gray
s-25:[0,12,75,-180,-50]coast_foreign:lgray
s-25:[0,12,75,-180,-50]borders_foreign:lgray
s-6:[0,12,75,-180,-50]us_states:lgray
s+6:s-25:[0,12,75,-180,-50]us_states_low:lgray

# Radars elsewhere
s-10:[0,-90,90,-50,180]rivers:dcyan
s-25:[0,-90,90,-50,180]lakes:dcyan
s-25:[0,-90,90,-50,180]borders:gray
s-25:[0,-90,90,-50,180]coast:lgray
s-25:[0,-90,12,-180,-50]lakes:dcyan
s-25:[0,-90,12,-180,-50]borders:gray
s-25:[0,-90,12,-180,-50]coast:lgray
s-25:[0,75,90,-180,-50]coast:lgray

# Places, the large ones first: a name that would cover another one is left out
+s-60:cities_1:white
+s-25:cities_2:white
+s-8:cities_3:white
+s-6:cities_4:white
"""


def binary(segments):
    """The bytes of a map file and the text of its name file, which is empty without names."""
    data, names = bytearray(), []
    for code, name, points in segments:
        rest = len(points)
        for _ in range(3):
            count = min(rest, LONG)
            data += struct.pack(">H", count)
            rest -= count
            if count < LONG:
                break
        if rest:
            raise ValueError(f"{name}: too many points")
        lats = [lat for lat, _ in points]
        lons = [lon for _, lon in points]
        data += struct.pack(">4fi", max(lats), min(lats), max(lons), min(lons), code)
        for point in points:
            data += struct.pack(">2f", *point)
        names.append(name.strip().replace(" ", "_")[:MAX_NAME])
    if not any(names):
        return bytes(data), ""
    return bytes(data), "".join(f"{i} {s[0]} {name}".rstrip() + "\n" for i, (s, name) in enumerate(zip(segments, names), 1))


def read_lines(path):
    segments = []
    for number, line in enumerate(path.read_text("ascii").splitlines(), 1):
        if line.startswith("#"):
            continue
        code, name, text = line.split("\t")
        values = [float(word) for word in text.split()]
        if len(values) % 2 or not values:
            raise ValueError(f"{path}:{number}: odd number of coordinates")
        segments.append((int(code), name, list(zip(values[::2], values[1::2]))))
    return segments


def near(points):
    """Tells whether a place lies on one of these lines, or within SAME degrees of it."""
    cells = set()
    for line in points:
        for (lat1, lon1), (lat2, lon2) in zip(line, line[1:] or line):
            steps = 1 + int(max(abs(lat2 - lat1), abs(lon2 - lon1)) / (SAME / 2))
            for i in range(steps + 1):
                part = i / steps
                cells.add((int((lat1 + part * (lat2 - lat1)) // SAME), int((lon1 + part * (lon2 - lon1)) // SAME)))
    around = [(i, k) for i in (-1, 0, 1) for k in (-1, 0, 1)]
    return lambda lat, lon: any((int(lat // SAME) + i, int(lon // SAME) + k) in cells for i, k in around)


def apart(coarse, fine, north):
    """The coarse lines up to a latitude where no fine one draws the same, in short pieces that meet."""
    known = near([points for _, _, points in fine])
    for code, name, points in coarse:
        if min(points)[0] > north:
            continue
        piece = []
        for a, b in zip(points, points[1:]):
            if known(*a) and known(*b):
                if piece:
                    yield code, name, piece
                piece = []
                continue
            piece = piece or [a]
            piece.append(b)
            lats, lons = zip(*piece)
            if max(max(lats) - min(lats), max(lons) - min(lons)) > LONGEST:
                yield code, name, piece
                piece = []
        if piece:
            yield code, name, piece


def read_cities(facts):
    """Places by rank, within a rank by their population."""
    cities = sorted(rows(facts / "cities.csv"), key=lambda r: (int(r["rank"]), -int(r["population"] or 0)))
    return [(int(r["rank"]), (LABEL, r["name"], [(float(r["lat"]), float(r["lon"]))])) for r in cities]


def make(facts):
    for name, source in LINES.items():
        data, names = binary(read_lines(facts / "maps" / f"{source}.txt"))
        yield f"maps/{name}.map", data
        if names:
            yield f"maps/{name}.mdb", names
    for name, (coarse, fine, north) in WORLD.items():
        lines = [read_lines(facts / "maps" / f"{source}.txt") for source in (coarse, fine)]
        data, names = binary(list(apart(*lines, north)))
        yield f"maps/{name}.map", data
        if names:
            yield f"maps/{name}.mdb", names
    cities = read_cities(facts)
    for name, ranks in CITIES:
        data, names = binary([segment for rank, segment in cities if rank in ranks])
        yield f"maps/{name}.map", data
        yield f"maps/{name}.mdb", names
    yield "kyv.map", DEFAULT_LIST

"""The station databases rad.cty (radars) and sao.cty (weather stations)."""

from .tables import rows

LINE = "{name:<17} {state:>2} {country:>2} {id:>4} {priority:1d} {lat:7.3f} {lon:8.3f} {elev:4.0f} {wmo:>5}\n"
LINE_SIZE = 59  # a reader divides the file's size by it
MAX_NAME = 17
NO_WMO = "99999"
NO_ELEVATION = 9999.0
NO_STATE = "--"

# 0 is the most important station, 9 the least.
RADAR_PRIORITY = {"active": 1, "retired": 8}
OTHER_PRIORITY = 5  # test, temporary, unknown

# Names that the width of the field would cut in an ugly place.
SHORT_NAMES = {"Washington_National": "Washington_Natl", "New_York_LaGuardia": "NewYork_LaGuardia"}


def make(facts):
    yield "rad.cty", database(map(radar, rows(facts / "radars.csv")))
    yield "sao.cty", database(map(station, rows(facts / "stations.csv")))


def radar(row):
    return record(row, row["icao"][1:], row["src_text"], RADAR_PRIORITY.get(row["status"], OTHER_PRIORITY))


def station(row):
    return record(row, row["iata"], row["wmo"], int(row["priority"]))


def record(row, alias, wmo, priority):
    return {
        "icao": row["icao"],
        "id": row["icao"],
        "alias": alias,
        "name": SHORT_NAMES.get(row["name"], row["name"]),
        "state": row["state"] or NO_STATE,
        "country": row["country"],
        "priority": priority,
        "lat": float(row["lat"]),
        "lon": float(row["lon"]),
        "elev": float(row["elev_m"]) if row["elev_m"] else NO_ELEVATION,
        "wmo": wmo or NO_WMO,
    }


def database(records):
    """The records, then the alias records: the same stations by their three-letter identifiers.

    An alias that two stations share is left out. Aliases come last and have no WMO number, so that a search finds the
    full record whenever its key allows.
    """
    records = list(records)
    owners = {}
    for item in records:
        owners.setdefault(item["id"], []).append(item)
    for item in records:
        if item["alias"]:
            owners.setdefault(item["alias"], []).append(item)
    aliases = [item | {"id": item["alias"], "wmo": NO_WMO} for item in records
               if item["alias"] and len(owners[item["alias"]]) == 1]
    everything = records + aliases
    stations = {item["id"].upper(): item["icao"] for item in everything}
    return "".join(line(item | {"name": unmistakable(item, stations)}) for item in everything)


def unmistakable(item, stations):
    """A search takes identifiers and names alike, so no name may read as the identifier of another station."""
    name = item["name"]
    return name if stations.get(name.upper(), item["icao"]) == item["icao"] else name + "_"


def line(item):
    text = LINE.format(**item)
    if len(text) != LINE_SIZE or len(text.split()) != 9:
        raise ValueError(f"station {item['id']}: does not fit the line: {text.strip()}")
    return text

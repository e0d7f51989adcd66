"""The region file kyv.reg: named maps."""

from .projection import domain_text
from .tables import rows

MAX_FIELD = 79  # the reader's limit for a name and for a domain text

# A bare word of up to this length is looked up among the stations first. So a region with so short a name has a longer
# one too; regions of these kinds get it here, "cuba_country".
MAX_STATION_KEY = 4
LONG_FORMS = ("continent", "country")

# Regions by box: (name, kind, projection, south, north, west, east), whole and half degrees, east beyond 180 where a
# box crosses the date line. Mercator where the equator runs through the middle: there the polar view distorts most.
BOXES = (
    ("africa", "continent", "merc", -36, 38, -19, 53),
    ("northern_africa", "region", "ps", 0, 38, -19, 52),
    ("asia", "continent", "ps", 5, 78, 40, 150),
    ("oceania", "continent", "merc", -50, 22, 110, 230),
    ("middle_east", "region", "ps", 12, 43, 25, 64),
    ("central_asia", "region", "ps", 34, 56, 46, 88),
    ("south_asia", "region", "ps", 5, 38, 60, 98),
    ("east_asia", "region", "ps", 18, 54, 73, 146),
    ("southeast_asia", "region", "merc", -11.5, 28.5, 92, 142),
    ("mediterranean", "region", "ps", 29, 47, -7, 37),
    ("scandinavia", "region", "ps", 54, 72, 4, 32),
    ("pacific", "region", "merc", -60, 62, 110, 290),
    ("north_pacific", "region", "ps", 5, 65, 120, 250),
    ("atlantic", "region", "merc", -60, 68, -100, 20),
    ("south_atlantic", "region", "ps", -60, 0, -65, 20),
    ("indian_ocean", "region", "merc", -45, 30, 20, 120),
    ("algeria", "country", "ps", 18.5, 37.5, -9, 12.5),
    ("argentina", "country", "ps", -55.5, -21.5, -74, -53),
    ("bolivia", "country", "ps", -23, -9.5, -70, -57),
    ("brazil", "country", "ps", -34, 5.5, -74, -34.5),
    ("chile", "country", "ps", -56, -17, -76, -66),
    ("china", "country", "ps", 18, 54, 73, 135.5),
    ("colombia", "country", "merc", -4.5, 13, -79.5, -66.5),
    ("congo", "country", "merc", -13.5, 5.5, 11, 31.5),
    ("cuba", "country", "ps", 19.5, 23.5, -85, -74),
    ("ecuador", "country", "merc", -5, 1.5, -81.5, -75),
    ("egypt", "country", "ps", 21.5, 32, 24.5, 37),
    ("ethiopia", "country", "ps", 3, 15, 33, 48),
    ("finland", "country", "ps", 59.5, 70.5, 20, 32),
    ("france", "country", "ps", 41, 51.5, -5.5, 10),
    ("germany", "country", "ps", 47, 55.5, 5.5, 15.5),
    ("greece", "country", "ps", 34.5, 42, 19, 28.5),
    ("greenland", "country", "ps", 59, 84, -74, -11),
    ("iceland", "country", "ps", 63, 67, -25, -13),
    ("india", "country", "ps", 6, 36, 68, 97.5),
    ("indonesia", "country", "merc", -11.5, 6.5, 94.5, 141.5),
    ("iran", "country", "ps", 25, 40, 44, 63.5),
    ("iraq", "country", "ps", 29, 37.5, 38.5, 49),
    ("ireland", "country", "ps", 51, 56, -11, -5),
    ("italy", "country", "ps", 36, 47.5, 6, 19),
    ("kazakhstan", "country", "ps", 40, 56, 46, 88),
    ("kenya", "country", "merc", -5, 5.5, 33.5, 42),
    ("libya", "country", "ps", 19, 33.5, 9, 25.5),
    ("madagascar", "country", "ps", -26, -11.5, 43, 51),
    ("mongolia", "country", "ps", 41, 52.5, 87, 120),
    ("morocco", "country", "ps", 27, 36, -13.5, -1),
    ("new_guinea", "country", "ps", -11.5, 0, 130, 156),
    ("new_zealand", "country", "ps", -47.5, -34, 166, 179),
    ("nigeria", "country", "ps", 4, 14, 2.5, 15),
    ("norway", "country", "ps", 57.5, 71.5, 4, 31.5),
    ("pakistan", "country", "ps", 23.5, 37.5, 60.5, 78),
    ("peru", "country", "ps", -18.5, 0, -81.5, -68.5),
    ("philippines", "country", "ps", 4.5, 21.5, 116, 127.5),
    ("poland", "country", "ps", 49, 55, 14, 24.5),
    ("portugal", "country", "ps", 36.5, 42.5, -10, -6),
    ("russia", "country", "ps", 41, 78, 27, 190),
    ("saudi_arabia", "country", "ps", 16, 32.5, 34.5, 56),
    ("south_africa", "country", "ps", -35, -22, 16, 33.5),
    ("spain", "country", "ps", 35.5, 44, -10, 4.5),
    ("sudan", "country", "ps", 8.5, 22.5, 21.5, 39),
    ("sweden", "country", "ps", 55, 69.5, 10.5, 24.5),
    ("taiwan", "country", "ps", 21.5, 25.5, 119.5, 122.5),
    ("thailand", "country", "ps", 5.5, 21, 97, 106),
    ("turkey", "country", "ps", 35.5, 42.5, 25.5, 45),
    ("ukraine", "country", "ps", 44, 52.5, 22, 40.5),
    ("united_kingdom", "country", "ps", 49.5, 61, -9, 2.5),
    ("venezuela", "country", "ps", 0.5, 13, -74, -59.5),
    ("vietnam", "country", "ps", 8, 24, 102, 110),
)

# Views from above a pole: the circle of 60 degrees, or the equator as that of the northern hemisphere.
POLAR = (
    ("arctic", "region", "ps:90:-100,90,-100,41,41,1.6900,1.6900"),
    ("antarctica", "continent", "ps:-90:0,-90,0,41,41,1.6900,1.6900"),
    ("shemi", "region", "ps:-90:0,-90,0,41,41,6,6"),
)

# Further names that people type: (name, name of the region).
ALIASES = (
    ("us", "conus"), ("usa", "conus"), ("united_states", "conus"), ("uk", "united_kingdom"),
    ("northeast", "neast"), ("southeast", "seast"), ("northwest", "nwest"), ("southwest", "swest"),
    ("northern_plains", "nplains"), ("southern_plains", "splains"), ("west_coast", "wcoast"),
    ("gulf_coast", "gcoast"), ("mid_atlantic", "midatl"), ("great_lakes", "glakes"), ("new_england", "neweng"),
    ("washington_dc", "us_dc"), ("virgin_islands", "us_vi"), ("northern_marianas", "us_mp"),
    ("north_america", "namer"), ("south_america", "samer"), ("central_america", "camer"),
    ("caribbean", "carib"), ("gulf_of_mexico", "gulfmex"), ("north_atlantic", "natlan"),
    ("eastern_pacific", "epacif"), ("mariana_islands", "marianas"), ("southern_africa", "safrica"),
    ("australia", "austral"), ("northern_hemisphere", "nhemi"), ("southern_hemisphere", "shemi"),
)


def make(facts):
    regions = {}  # name: (kind, domain text), in the order of the file
    listed = rows(facts / "regions.csv")
    for row in listed:
        add(regions, row["name"], row["kind"], row["domain"])
    for name, kind, *box in BOXES:
        add(regions, name, kind, domain_text(*box))
    for name, kind, domain in POLAR:
        add(regions, name, kind, domain)
    # A state goes by its full name too, unless that is the name of a region already (Alaska with the Aleutians).
    for row in listed:
        name = row["title"].lower().replace(" ", "_")
        if row["kind"] == "state" and name not in regions:
            add(regions, name, *regions[row["name"]])
    for name, of in ALIASES:
        add(regions, name, *regions[of])

    taken = station_words(facts)
    for name in [name for name in regions if len(name) <= MAX_STATION_KEY]:
        kind = regions[name][0]
        if kind in LONG_FORMS:
            add(regions, f"{name}_{kind}", *regions[name])
        if name in taken:
            del regions[name]
    yield "kyv.reg", "".join(f"{name} {kind} {number} {domain}\n"
                             for number, (name, (kind, domain)) in enumerate(regions.items(), 1))


def add(regions, name, kind, domain):
    if name in regions:
        raise ValueError(f"region {name}: the name is taken")
    if max(len(name), len(domain)) > MAX_FIELD or len(f"{name} {kind} {domain}".split()) != 3:
        raise ValueError(f"region {name}: a field is too long or not one word")
    regions[name] = (kind, domain)


def station_words(facts):
    """All that would be found as a station, in lower case."""
    return {row[column].lower() for row in rows(facts / "stations.csv") for column in ("icao", "iata", "name")}

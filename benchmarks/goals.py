"""The goals, and whether they were reached."""
import dataclasses

GROWTH = 1.15  # the time per dot may be this much longer than the shortest
MEMORY_OF_PHOTO = 80  # megabytes
MEMORY_OF_SHARP_PHOTO = 60
MEMORY_OF_TICKET = 30
# One-bit pictures for which about as many bytes are sent as they have.
JUDGED_PICTURES = ("text", "photo", "black", "stripes", "half-command")


@dataclasses.dataclass
class Goal:
    what: str
    measured: float
    most: float
    unit: str = ""

    def row(self):
        verdict = "met" if self.measured <= self.most else "**not met**"
        return (self.what, f"{self.measured:.3g}{self.unit}", f"{self.most:.4g}{self.unit}", verdict)


def best(sets):
    """The figure of the instruction set that the library chooses: the last one measured."""
    return list(sets.values())[-1]


def of_stages(stages):
    dither = stages["dither, one core"]
    judged = "AVX2" if "AVX2" in dither else list(dither)[-1]
    yield Goal(f"dither, one core, {judged}", dither[judged]["copies"], 1.3, " copies")
    yield Goal(f"halftone, one core, {judged}", stages["halftone, one core"][judged]["copies"], 0.8,
               " copies")
    for name, most in (("dither, two cores", 0.8), ("threshold", 0.8), ("pack", 0.1),
                       ("sharp threshold", 0.5)):
        yield Goal(name, best(stages[name])["copies"], most, " copies")
    for kind in JUDGED_PICTURES:
        encode = best(stages[f"encode, {kind}"])
        yield Goal(f"encode, {kind}", encode["copies"], 0.15, " copies")
    yield Goal("all, dithered", best(stages["all, dithered"])["copies"], 1.5, " copies")


def of_processes(tables):
    def ratio(table, peer):
        found = [row for row in tables[table] if row["name"].startswith(peer)]
        return tables[table][0]["seconds"] / found[0]["seconds"] if found else None

    for what, table, peer, most in (
        ("photo, in the time of python3-pil", "photo", "python3-pil", 0.35),
        ("photo, in the time of the JPEG decode alone", "photo", "JPEG decode", 1.6),
        ("photo-sharp, in the time of the JPEG decode alone", "photo-sharp", "JPEG decode", 1.2),
        ("photo-small, in the time of the JPEG decode alone", "photo-small", "JPEG decode", 0.6),
        ("page, in the time of ghostscript", "page", "ghostscript", 1),
        ("page, in the time of mupdf-tools", "page", "mupdf", 1),
        ("page, in the time of poppler-utils", "page", "poppler", 1),
        ("ticket, in the time of mupdf-tools", "ticket", "mupdf", 1),
    ):
        measured = ratio(table, peer)
        if measured is not None:  # a peer may be missing in a brief run
            yield Goal(what, measured, most)
    for table, most in (("photo", MEMORY_OF_PHOTO), ("photo-sharp", MEMORY_OF_SHARP_PHOTO),
                        ("photo-small", MEMORY_OF_TICKET)):
        yield Goal(f"{table}, peak memory", tables[table][0]["megabytes"], most, " MB")


def of_encode_memory(rows):
    judged = [row for row in rows if row["kind"] in JUDGED_PICTURES]
    most = max(judged, key=lambda row: row["megabytes"])
    yield Goal(f"encode of a ready picture ({most['kind']}), peak memory in bytes for each dot",
               most["megabytes"] * 1e6 / most["dots"], 3)


def of_growth(growth):
    each = [row["ms"] / row["dots"] for row in growth]
    millions = growth[-1]["dots"] / 1e6
    yield Goal(f"time per dot from 1 to {millions:.0f} million dots, most against least",
               max(each) / min(each), GROWTH)


def of_start(start):
    yield Goal("tavio --version, more than an empty program",
               start["tavio --version"] - start["empty program"], 1.5, " ms")


def of_server(server):
    if server["threads"] == 2:
        yield Goal("a server's tickets, two threads in the time of one", 1 / server["ratio"],
                   1 / 1.8)


def all_goals(results):
    yield from of_stages(results["stages"])
    yield from of_processes(results["processes"])
    yield from of_encode_memory(results["encode_memory"])
    yield from of_growth(results["growth"])
    yield from of_start(results["start"])
    yield from of_server(results["server"])

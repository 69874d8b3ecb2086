"""How many of the tool's own codes are read, for each kind, module and resolution.

Each of the data is printed in both orientations and at eight distances from the ticket's edges, which
must give the same dots. Those are read by two libraries: as they are, and through the camera.
"""
import numpy

import camera
import code_readers
import own_codes
import scanners

MODULES = (2, 3, 4, 5, 6, 7, 8)
RESOLUTIONS = (200, 300, 600)
MIN_CAMERA_MODULE = 3
MIN_PLAIN_FACTOR = 2  # pixels a dot
PLAIN_MODULE = 12  # pixels, of small modules

# Pixels a dot. At 600 dots an inch the camera is held at half the distance.
CAMERA_FACTORS = {200: 3, 300: 2, 600: 2}

# The libraries that read these two find them only if they lie straight and large in the picture, however
# well they are printed: the camera is held straight, and nearer.
STRAIGHT_KINDS = ("pdf417", "aztec")
STRAIGHT_FACTOR = 4


def variants(kind, data, number, module, resolution, phases):
    """A code at all its places. Each of the data has another turn."""
    return [own_codes.Code(kind, data, module, resolution, orientation, number % 4, phase)
            for orientation in own_codes.ORIENTATIONS for phase in range(phases)]


def printed_dots(program, kind, texts, module, resolution, phases):
    """The dots of each of the data, as they lie if they are not turned."""
    places = [variants(kind, data, number, module, resolution, phases)
              for number, (data, _) in enumerate(texts)]
    stream = own_codes.drawn(program, [code for each in places for code in each])
    result = []
    for number, codes in enumerate(places):
        first, *others = [next(stream) for _ in codes]
        if not all(numpy.array_equal(first, other) for other in others):
            raise SystemExit(f"{codes[0]}: other dots at another place")
        result.append(numpy.rot90(first, number % 4))
    if next(stream, None) is not None:
        raise SystemExit("More codes than asked for")
    return result


def plain_view(module):
    """(key, dots and seed -> picture, the grey of paper)"""
    factor = max(MIN_PLAIN_FACTOR, PLAIN_MODULE // module)
    return ("plain", lambda dots, seed: scanners.enlarged(dots, factor), 255)


def camera_view(kind, resolution):
    is_straight = kind in STRAIGHT_KINDS
    factor = STRAIGHT_FACTOR if is_straight else CAMERA_FACTORS[resolution]
    turn = 0 if is_straight else camera.TURN_DEGREES
    seen_as = camera.CAMERA_PIXELS_PER_INCH // factor
    return (f"camera {factor}",
            lambda dots, seed: camera.photographed(dots, seen_as, seed, turn), camera.PAPER)


class Readings:
    """Remembers what was read: resolutions often have the same dots."""

    def __init__(self, kind, texts):
        self.kind = kind
        self.texts = texts
        self.results = {}

    def of(self, view, dots):
        """{reader: how many are read}"""
        name, see, paper = view
        key = (name, *(each.tobytes() for each in dots))
        if key not in self.results:
            pictures = [see(each, seed) for seed, each in enumerate(dots)]
            self.results[key] = {
                reader: sum(read(self.kind, pictures, self.texts, paper))
                for reader, read in code_readers.readers_of(self.kind).items()}
        return self.results[key]


def records_of(program, kind, modules, resolutions, phases, count):
    texts = own_codes.data_of(kind, count)
    readings = Readings(kind, [text for _, text in texts])
    for module in modules:
        for resolution in resolutions:
            dots = printed_dots(program, kind, texts, module, resolution, phases)
            views = {"plain": plain_view(module)}
            if module >= MIN_CAMERA_MODULE:
                views["camera"] = camera_view(kind, resolution)
            for seen, view in views.items():
                for reader, read in readings.of(view, dots).items():
                    yield {"printer": "Tavio", "kind": kind, "module": module, "resolution": resolution, "seen": seen,
                           "reader": reader, "of": len(dots), "read": read,
                           "printed": len(dots) * phases * len(own_codes.ORIENTATIONS)}


def measure(program, pool, kinds=tuple(own_codes.KINDS), modules=MODULES,
            resolutions=RESOLUTIONS, phases=own_codes.PHASES, count=own_codes.COUNT):
    """[{"kind", "module", "resolution", "seen", "reader", "of", "read", "printed"}]: how many of how
    many different codes were read, and how often they were printed."""
    def measured(kind):
        records = list(records_of(program, kind, modules, resolutions, phases, count))
        print(f"Own codes: {own_codes.KINDS[kind]}", flush=True)
        return records

    return [record for records in pool.map(measured, kinds) for record in records]

"""How many codes of each kind scan, for each printer, resolution and module width."""
import camera
import scanners
from codes import KINDS
from pages import MODULES, code_page

RESOLUTIONS = (200, 300, 600)
POSITIONS = 20
SEED = 11


def cropped(dots, box):
    left, top, right, bottom = box
    return dots[top:bottom, left:right]


def folder_of(printer, folder):
    """Printers work at the same time, each in a folder of its own."""
    own_folder = folder / printer.name
    own_folder.mkdir(exist_ok=True)
    return own_folder


def scan_plain(symbology, crops, texts, resolution, folder):
    factor = camera.CAMERA_PIXELS_PER_INCH // resolution
    pictures = [scanners.enlarged(crop, factor) for crop in crops]
    return scanners.count_read(symbology, pictures, texts, folder)


def scan_photographed(symbology, crops, texts, resolution, folder):
    pictures = [camera.photographed(crop, resolution, seed) for seed, crop in enumerate(crops)]
    return scanners.count_read(symbology, pictures, texts, folder, camera.PAPER)


def scan_crops(kind, crops, texts, resolution, folder):
    """(scanned as they are, scanned through the camera)."""
    return tuple(scan(kind.scanner, crops, texts, resolution, folder)
                 for scan in (scan_plain, scan_photographed))


class Scans:
    """Remembers results: printers often draw a code in the same dots."""

    def __init__(self, kind, resolution):
        self.kind = kind
        self.resolution = resolution
        self.results = {}

    def of_pieces(self, pieces, dots, folder):
        crops = [cropped(dots, piece.box(self.resolution)) for piece in pieces]
        texts = [piece.content for piece in pieces]
        key = tuple((crop.shape, crop.tobytes()) for crop in crops)
        if key not in self.results:
            self.results[key] = scan_crops(self.kind, crops, texts, self.resolution, folder)
        return self.results[key]

    def of_printer(self, page, printer, folder):
        """A record for each module width."""
        own_folder = folder_of(printer, folder)
        dots = printer.dots(page, self.resolution, own_folder)
        records = []
        for module, pieces in page.pieces.items():
            plain, camera_too = self.of_pieces(pieces, dots, own_folder)
            records.append({"kind": self.kind.name, "resolution": self.resolution,
                            "module": module, "printer": printer.name, "of": len(pieces),
                            "plain": plain, "camera": camera_too})
        return records


def measure(printers, folder, pool, kinds=KINDS, resolutions=RESOLUTIONS, modules=MODULES,
            positions=POSITIONS):
    """[{"kind", "resolution", "module", "printer", "of", "plain", "camera"}]: how many of how many
    codes were scanned as they are, and through the camera."""
    records = []
    for kind in kinds:
        page = code_page(folder / f"{kind.name}.pdf", kind, positions, SEED, modules)
        for resolution in resolutions:
            print(f"Codes: {kind.name}, {resolution} dpi", flush=True)
            scans = Scans(kind, resolution)
            for own in pool.map(lambda printer: scans.of_printer(page, printer, folder), printers):
                records += own
    return records

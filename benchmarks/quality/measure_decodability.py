"""Decodability of the tool's linear codes and of other programs' at the same module."""
import random
import shutil
import subprocess

from PIL import Image
from reportlab.graphics.barcode import createBarcodeDrawing
from reportlab.pdfgen.canvas import Canvas

import decodability
import own_codes
import pages
import printers

OURS = "Tavio"
MODULES = (3, 4, 6)  # dots
RESOLUTIONS = (200, 300, 600)
COUNT = 6  # data of each kind
BAR_POINTS = 18  # the height of the peers' bars
BAND_ROWS = 20  # dots, of which scans are made
REPORTLAB = {"code128": ("Code128Auto", {}), "ean13": ("EAN13", {}),
             "itf": ("I2of5", {"ratio": 3, "checksum": 0, "bearers": 0})}
ZINT = {"code128": "CODE128", "ean13": "EANX", "itf": "C25INTER"}


def bars_of(dots):
    """A band of rows with bars alone: near the top, where no program has text."""
    first = len(dots) // 10
    return dots[first:first + BAND_ROWS]


def without_white(dots):
    columns = dots.any(axis=0).nonzero()[0]
    return dots[:, columns[0]:columns[-1] + 1]


def own(program, kind, data, module, resolution):
    codes = [own_codes.Code(kind, each, module, resolution) for each in data]
    return list(own_codes.drawn(program, codes))


def zint(kind, data, module, resolution, folder):
    path = folder / "zint.png"
    subprocess.run(["zint", f"--barcode={ZINT[kind]}", f"--data={data}", f"--scale={module / 2}",
                    "--notext", f"--output={path}"], check=True, capture_output=True)
    return printers.black_dots(Image.open(path))


def vector_page(kind, data, module, resolution, chance, path):
    """A page with one code, drawn by reportlab at a random place between the dots."""
    name, options = REPORTLAB[kind]
    width = module * pages.POINTS_PER_INCH / resolution
    drawing = createBarcodeDrawing(name, value=data, barWidth=width, barHeight=BAR_POINTS,
                                   humanReadable=False, quiet=False, **options)
    inches = tuple(1 + int((side + 2 * pages.GAP + 1) // pages.POINTS_PER_INCH)
                   for side in (drawing.width, drawing.height))
    canvas = Canvas(str(path), invariant=1,
                    pagesize=[pages.POINTS_PER_INCH * each for each in inches])
    drawing.drawOn(canvas, pages.GAP + chance.random(), pages.GAP + chance.random())
    canvas.save()
    return pages.Page(path, inches, {})


def rendered(printer, kind, data, module, resolution, chance, folder):
    page = vector_page(kind, data, module, resolution, chance, folder / "bars.pdf")
    dots = without_white(printer.dots(page, resolution, folder))
    rows = dots.any(axis=1).nonzero()[0]
    return dots[rows[0]:rows[-1] + 1]


def peers():
    """{name: (kind, data, module, resolution, chance, folder) -> dots}"""
    found = {}
    if shutil.which("zint"):
        found["zint"] = lambda kind, data, module, resolution, chance, folder: zint(
            kind, data, module, resolution, folder)
    for printer in printers.peers()[:4]:
        if shutil.which(printer.needs):
            found[f"reportlab, {printer.name}"] = (
                lambda *arguments, printer=printer: rendered(printer, *arguments))
    return found


def valued(kind, dots, module, resolution):
    """(the worst scan's decodability, the mean); 0 if the bars cannot be told apart."""
    try:
        return decodability.decodability(kind, bars_of(dots), module, resolution)
    except (IndexError, ValueError):
        return 0.0, 0.0


def measure(program, folder, kinds=own_codes.LINEAR, modules=MODULES, resolutions=RESOLUTIONS,
            count=COUNT, others=None):
    """[{"kind", "module", "resolution", "printer", "worst", "mean"}]"""
    others = peers() if others is None else others
    records = []
    for kind in kinds:
        data = [each for each, _ in own_codes.data_of(kind, count)]
        for resolution in resolutions:
            for module in modules:
                chance = random.Random(f"{own_codes.SEED} {kind} {resolution} {module}")
                drawn = {OURS: own(program, kind, data, module, resolution)}
                for name, draw in others.items():
                    drawn[name] = [draw(kind, each, module, resolution, chance, folder)
                                   for each in data]
                for name, pictures in drawn.items():
                    values = [valued(kind, dots, module, resolution) for dots in pictures]
                    records.append({"kind": kind, "module": module, "resolution": resolution,
                                    "printer": name, "worst": min(worst for worst, _ in values),
                                    "mean": sum(mean for _, mean in values) / len(values)})
        print(f"Decodability: {own_codes.KINDS[kind]}", flush=True)
    return records

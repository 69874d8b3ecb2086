"""How many letters are read wrongly, for each printer, resolution, face and size."""
import camera
import scanners
from measure_codes import RESOLUTIONS, SEED, cropped, folder_of
from pages import FACES, TEXT_SIZES, text_page


def measure_printer(page, printer, resolution, folder):
    """A record for each block of text."""
    own_folder = folder_of(printer, folder)
    dots = printer.dots(page, resolution, own_folder)
    factor = camera.CAMERA_PIXELS_PER_INCH // resolution
    records = []
    for (face, size), (piece,) in page.pieces.items():
        picture = scanners.enlarged(cropped(dots, piece.box(resolution)), factor)
        wrong = scanners.share_wrong(picture, piece.content, own_folder)
        records.append({"face": face, "size": size, "resolution": resolution,
                        "printer": printer.name, "wrong": wrong})
    return records


def measure(printers, folder, pool, resolutions=RESOLUTIONS, faces=tuple(FACES), sizes=TEXT_SIZES):
    """[{"face", "size", "resolution", "printer", "wrong"}]: the share of wrong letters."""
    page = text_page(folder / "text.pdf", SEED, faces, sizes)
    records = []
    for resolution in resolutions:
        print(f"Text: {resolution} dpi", flush=True)
        for own in pool.map(lambda printer: measure_printer(page, printer, resolution, folder),
                            printers):
            records += own
    return records

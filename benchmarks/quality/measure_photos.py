"""How much printed pictures look like their originals, and how dark the steps of a wedge come
out. Both sides are seen through the same eye: a blur of 1.5 dots, which is a minute of arc at 300
dots an inch and about half a metre."""
import photos
from camera import blurred, inked
from measure_codes import folder_of
from photo_printers import grey_original
from similarity import ssim

SIZE = (1200, 900)  # dots
EYE_BLUR = 1.5  # dots, standard deviation
EDGE = 12  # dots of a step that are not counted, on each side


def as_printed(dots):
    """Greys from 0 to 1."""
    return 1 - inked(dots)


def likeness(dots, original):
    return ssim(blurred(as_printed(dots), EYE_BLUR), blurred(original, EYE_BLUR))


def measure_photos(printers, folder, pool, names=tuple(photos.PHOTOS)):
    """[{"picture", "printer", "ssim"}]"""
    records = []
    for name in names:
        print(f"Pictures: {name}", flush=True)
        path = folder / f"{name}.jpg"
        photos.make_photo(name, path)
        original = grey_original(path, SIZE)

        def record(printer):
            dots = printer.draw(path, SIZE, folder_of(printer, folder))
            return {"picture": name, "printer": printer.name, "ssim": likeness(dots, original)}

        records += pool.map(record, printers)
    return records


def step_means(dots):
    """The mean grey of each step as printed, 0 to 255."""
    paper = as_printed(dots) * 255
    side = photos.STEP_PIXELS
    return [float(paper[EDGE:-EDGE, side * step + EDGE:side * (step + 1) - EDGE].mean())
            for step in range(photos.STEPS)]


def measure_wedge(printers, folder, pool):
    """[{"printer", "means"}]: the mean grey of each step, 0 to 255."""
    print("Wedge", flush=True)
    path = folder / "wedge.png"
    photos.make_wedge(path)

    def record(printer):
        dots = printer.draw(path, photos.wedge_size(), folder_of(printer, folder))
        return {"printer": printer.name, "means": step_means(dots)}

    return list(pool.map(record, printers))

"""Printed dots of all printers side by side, as small pictures for the document."""
import numpy
from PIL import Image, ImageDraw

import measure_photos
import photos
from codes import KINDS
from measure_codes import SEED, cropped, folder_of
from pages import code_page, text_page

RESOLUTION = 300
COLUMNS = 3
LABEL = 14  # pixels
GAP = 10  # pixels


def sheet(named_dots, factor):
    """A black-and-white picture; each dot is a square of factor x factor pixels."""
    shapes = [dots.shape for _, dots in named_dots]
    height = max(shape[0] for shape in shapes) * factor + LABEL + GAP
    width = max(shape[1] for shape in shapes) * factor + GAP
    rows = -(-len(named_dots) // COLUMNS)
    result = Image.new("1", (COLUMNS * width + GAP, rows * height + GAP), 1)
    draw = ImageDraw.Draw(result)
    for number, (name, dots) in enumerate(named_dots):
        left, top = GAP + number % COLUMNS * width, GAP + number // COLUMNS * height
        draw.text((left, top), name, fill=0)
        enlarged = Image.fromarray(numpy.where(dots, 0, 255).astype(numpy.uint8).repeat(
            factor, 0).repeat(factor, 1))
        result.paste(enlarged.convert("1", dither=Image.NONE), (left, top + LABEL))
    return result


def of_page(printers, page, box, folder):
    """[(printer's name, dots of the box)]"""
    return [(printer.name, cropped(printer.dots(page, RESOLUTION, folder_of(printer, folder)), box))
            for printer in printers]


def code_sheet(printers, folder):
    page = code_page(folder / "code.pdf", KINDS[0], 1, SEED, modules=(0.7,))
    return sheet(of_page(printers, page, page.pieces[0.7][0].box(RESOLUTION), folder), 2)


def text_sheet(printers, folder):
    page = text_page(folder / "small text.pdf", SEED, sizes=(6,))
    left, top, _, _ = page.pieces["serif", 6][0].box(RESOLUTION)
    return sheet(of_page(printers, page, (left, top, left + 300, top + 110), folder), 1)


def of_picture(printers, path, size, folder):
    return [(printer.name, printer.draw(path, size, folder_of(printer, folder)))
            for printer in printers]


def photo_sheet(printers, folder):
    """A part of a picture, dot for dot."""
    path = folder / "portrait.jpg"
    photos.make_photo("portrait", path)
    printed = of_picture(printers, path, measure_photos.SIZE, folder)
    return sheet([(name, dots[250:550, 450:750]) for name, dots in printed], 1)


def wedge_sheet(printers, folder):
    """The middle of each step."""
    path = folder / "wedge.png"
    photos.make_wedge(path)
    printed = of_picture(printers, path, photos.wedge_size(), folder)
    columns = numpy.concatenate([numpy.arange(30, 50) + photos.STEP_PIXELS * step
                                 for step in range(photos.STEPS)])
    return sheet([(name, dots[40:100, columns]) for name, dots in printed], 1)


def draw_all(page_printers, picture_printers, folder, target):
    target.mkdir(exist_ok=True)
    sheets = {
        "code": code_sheet(page_printers, folder),
        "text": text_sheet(page_printers, folder),
        "photo": photo_sheet(picture_printers, folder),
        "wedge": wedge_sheet(picture_printers, folder),
    }
    for name, picture in sheets.items():
        picture.save(target / f"{name}.png", optimize=True)

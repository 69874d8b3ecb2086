"""The programs that read codes and text, and what they read of a list of pictures."""
import os
import subprocess
import unicodedata

import numpy
from PIL import Image, ImageOps

MARGIN = 20  # pixels of white around a picture


def enlarged(dots, factor):
    """Dots as a grey picture, each a square of factor x factor pixels. True is black."""
    pixels = numpy.where(dots, 0, 255).astype(numpy.uint8)
    return Image.fromarray(pixels.repeat(factor, 0).repeat(factor, 1))


def output_of(command, **environment):
    done = subprocess.run(command, capture_output=True, env={**os.environ, **environment})
    return done.stdout.decode("utf-8", "replace")


def saved(pictures, folder, paper):
    """The files of the pictures, each with a margin."""
    paths = [folder / f"scan-{number}.pgm" for number in range(len(pictures))]
    for path, picture in zip(paths, pictures):
        ImageOps.expand(picture, MARGIN, paper).save(path)
    return paths


def read_bars(symbology, paths):
    command = ["zbarimg", "--quiet", "--raw", "--nodbus", "-Sdisable", f"-S{symbology}.enable"]
    return output_of([*command, *paths]).splitlines()


def read_data_matrix(paths):
    """Without limits of time, so that what is read does not depend on the machine's speed. A search
    for strong and long edges only ends soon where there is nothing to be read: the shortest edge of a
    code has 116 pixels."""
    search = ["--gap=8", "--threshold=20", "--minimum-edge=60", "--stop-after=1"]
    return output_of(["dmtxread", "--newline", *search, *paths]).splitlines()


def count_read(symbology, pictures, texts, folder, paper=255):
    """How many of the pictures' codes are read, each with its text (the end of the content)."""
    paths = saved(pictures, folder, paper)
    is_matrix = symbology == "datamatrix"
    contents = read_data_matrix(paths) if is_matrix else read_bars(symbology, paths)
    return len({content[-12:] for content in contents} & set(texts))


def edit_distance(one, other):
    """The number of letters to insert, remove or replace."""
    row = list(range(len(other) + 1))
    for number, letter in enumerate(one, 1):
        last, row[0] = row[0], number
        for column, wanted in enumerate(other, 1):
            replaced = last + (letter != wanted)
            last = row[column]
            row[column] = min(replaced, row[column] + 1, row[column - 1] + 1)
    return row[-1]


def languages():
    """Those that the reader of text knows."""
    return set(output_of(["tesseract", "--list-langs"]).split()[1:])


def shown(text):
    """Letters as they look: without marks of direction, which do not show, and characters that look
    the same alike, such as the Greek letter and the sign of micro. Spaces and ends of lines are alike."""
    visible = "".join(letter for letter in text if unicodedata.category(letter) != "Cf")
    return " ".join(unicodedata.normalize("NFKC", visible).split())


def share_wrong(picture, text, folder, language="eng"):
    """The wrong letters of a block of text, from 0 to 1."""
    path, = saved([picture], folder, 255)
    command = ["tesseract", path, "-", "--psm", "6", "--dpi", "600", "-l", language]
    read = shown(output_of(command, OMP_THREAD_LIMIT="1"))
    wanted = shown(text)
    return min(edit_distance(read, wanted) / len(wanted), 1)

"""The programs that read codes and text, and what they read of a list of pictures."""
import os
import subprocess

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


def share_wrong(picture, text, folder):
    """The wrong letters of a block of text, from 0 to 1, spaces and ends of lines alike."""
    path, = saved([picture], folder, 255)
    command = ["tesseract", path, "-", "--psm", "6", "--dpi", "600", "-l", "eng"]
    read = " ".join(output_of(command, OMP_THREAD_LIMIT="1").split())
    wanted = " ".join(text.split())
    return min(edit_distance(read, wanted) / len(wanted), 1)

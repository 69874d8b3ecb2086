#!/usr/bin/python3
"""Makes the pictures of docs/calibration.md from the page that the tool prints.

  calibration_pictures.py [TAVIO]   the tool, build/release/bin/tavio if it is not given
"""
import pathlib
import subprocess
import sys
import tempfile

import numpy as np
from PIL import Image

import dot_gain

ROOT = pathlib.Path(__file__).resolve().parent.parent
PICTURES = ROOT / "docs/calibration"
PAPER = 225  # white paper, so that its edge shows on a white page
TABLE = 120  # what the ticket lies on


def page(tavio):
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([tavio, "calibrate", "--to", f"{folder}/page.png"], check=True,
                       stdout=subprocess.DEVNULL)
        return np.array(Image.open(f"{folder}/page.png").convert("L")) < 128


def on_paper(black, step, right, down):
    """The dots that fall on a ticket whose corner lies there; round it a printer prints on nothing."""
    height, width = black.shape
    moved = np.zeros_like(black)
    moved[max(-down, 0):height - max(down, 0), max(-right, 0):width - max(right, 0)] = black[
        max(down, 0):height + min(down, 0), max(right, 0):width + min(right, 0)]
    return discs(moved, step)


def discs(black, step, scale=4):
    """Each dot is a disc as wide as this step of the tone says."""
    height, width = black.shape
    radius = dot_gain.width(step) / 2
    across = (np.arange(scale) + 0.5) / scale - 0.5
    around = np.pad(black, 1)
    inked = np.zeros((height, scale, width, scale), bool)
    for row, y in enumerate(across):
        for column, x in enumerate(across):
            for down in (-1, 0, 1):
                for right in (-1, 0, 1):
                    if (right - x) ** 2 + (down - y) ** 2 <= radius**2:
                        inked[:, row, :, column] |= around[
                            1 + down:1 + down + height, 1 + right:1 + right + width]
    return np.where(inked.reshape(height * scale, width * scale), 0, PAPER).astype(np.uint8)


def save(name, grey, width, height):
    picture = Image.fromarray(grey).resize((width, height), Image.BOX)
    picture.quantize(16).save(PICTURES / name, optimize=True)


def main():
    PICTURES.mkdir(exist_ok=True)
    black = page(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build/release/bin/tavio")
    Image.fromarray(np.where(black, 0, 255).astype(np.uint8)).convert("1").save(
        PICTURES / "page.png", optimize=True)
    printed = on_paper(black, 7, 3, -2)
    scale = 4
    corner = np.full((230 * scale, 260 * scale), TABLE, np.uint8)
    corner[20 * scale:, 20 * scale:] = printed[:210 * scale, :240 * scale]
    save("corner.png", corner, 780, 690)
    tones = printed[70 * scale:200 * scale, 70 * scale:1030 * scale]
    save("tones.png", tones, 960, 130)
    seen = Image.fromarray(tones).resize((960, 130), Image.BOX)
    small = seen.resize((120, 16), Image.BOX).resize((960, 130), Image.BICUBIC)
    small.quantize(32).save(PICTURES / "tones-far.png", optimize=True)


if __name__ == "__main__":
    main()

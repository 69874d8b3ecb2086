#!/usr/bin/python3
"""Measures print quality and writes docs/print-quality.md: run.py BUILD [--ours].

BUILD is the folder of a release build of the tool. With --ours the other programs' figures are those
of the last run, which BUILD/quality/results.json keeps.
"""
import concurrent.futures
import json
import os
import pathlib
import sys

sys.dont_write_bytecode = True
HERE = pathlib.Path(__file__).resolve().parent
sys.path.append(str(HERE.parent))  # report.py and machine.py

import document
import measure_codes
import measure_decodability
import measure_own_codes
import measure_photos
import measure_text
import measure_words
import photo_printers
import pictures
import printers


def tables(page_printers, picture_printers, drawer, peers, folder):
    """(name, records) of each table; the quick ones first. drawer: the program that draws codes. peers:
    what draws linear codes, too."""
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        yield "wedge", measure_photos.measure_wedge(picture_printers, folder, pool)
        yield "photos", measure_photos.measure_photos(picture_printers, folder, pool)
        yield "words", measure_words.measure(page_printers[0], folder, pool)
        yield "text", measure_text.measure(page_printers, folder, pool)
        yield "decodability", measure_decodability.measure(drawer, folder, others=peers)
        yield "own codes", measure_own_codes.measure(drawer, pool)
        yield "codes", measure_codes.measure(page_printers, folder, pool)


def with_peers_of(last, records, own_names):
    """Records of the own printers, followed by those of the others in the last run."""
    return records + [each for each in last if each["printer"] not in own_names]


def measure(of_pages, of_pictures, drawer, folder, only_ours):
    """All tables. They are saved as they are made, so that a long run is not lost."""
    file = folder / "results.json"
    results = json.loads(file.read_text()) if only_ours else {}
    if only_ours:
        of_pages, of_pictures = ([each for each in printers_of if each.is_ours]
                                 for printers_of in (of_pages, of_pictures))
    peers = {} if only_ours else measure_decodability.peers()
    own_names = {each.name for each in of_pages + of_pictures}
    for name, records in tables(of_pages, of_pictures, drawer, peers, folder):
        results[name] = with_peers_of(results.get(name, []), records, own_names)
        file.write_text(json.dumps(results, indent=1) + "\n")
    return results


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    folder = build / "quality"
    folder.mkdir(exist_ok=True)
    of_pages = printers.all_printers(build / "bin/tavio")
    of_pictures = photo_printers.all_printers(build / "bin/tavio")
    results = measure(of_pages, of_pictures, build / "bin/draw_codes", folder,
                      "--ours" in sys.argv[2:])
    docs = HERE.parent.parent / "docs"
    pictures.draw_all(of_pages, of_pictures, folder, docs / "print-quality")
    document.write(results, HERE / "print-quality.md.in", docs / "print-quality.md")


if __name__ == "__main__":
    main()

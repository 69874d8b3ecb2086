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
import measure_photos
import measure_text
import photo_printers
import pictures
import printers


def measured(page_printers, picture_printers, folder):
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        return {
            "codes": measure_codes.measure(page_printers, folder, pool),
            "text": measure_text.measure(page_printers, folder, pool),
            "photos": measure_photos.measure_photos(picture_printers, folder, pool),
            "wedge": measure_photos.measure_wedge(picture_printers, folder, pool),
        }


def with_peers_of(last, results, own_names):
    """Results of the own printers, followed by those of the others in the last run."""
    return {table: records + [each for each in last[table] if each["printer"] not in own_names]
            for table, records in results.items()}


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    folder = build / "quality"
    folder.mkdir(exist_ok=True)
    file = folder / "results.json"
    of_pages = printers.all_printers(build / "bin/tavio")
    of_pictures = photo_printers.all_printers(build / "bin/tavio")
    if "--ours" in sys.argv[2:]:
        own_pages, own_pictures = ([each for each in all_of if each.is_ours]
                                   for all_of in (of_pages, of_pictures))
        results = measured(own_pages, own_pictures, folder)
        own_names = {each.name for each in own_pages + own_pictures}
        results = with_peers_of(json.loads(file.read_text()), results, own_names)
    else:
        results = measured(of_pages, of_pictures, folder)
    file.write_text(json.dumps(results, indent=1) + "\n")
    docs = HERE.parent.parent / "docs"
    pictures.draw_all(of_pages, of_pictures, folder, docs / "print-quality")
    document.write(results, HERE / "print-quality.md.in", docs / "print-quality.md")


if __name__ == "__main__":
    main()

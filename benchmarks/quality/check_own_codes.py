#!/usr/bin/python3
"""A short form of what is measured of the tool's own codes that fails if one is not read, or if a
linear one has less than grade A: check_own_codes.py DRAW_CODES.

Exits with 77 if a program or a package is missing.
"""
import concurrent.futures
import pathlib
import sys

sys.dont_write_bytecode = True
import skipping

NEEDED = ("zbarimg", "dmtxread", "java")
RESOLUTION = 300

skipping.skip_without(NEEDED)
try:
    import code_readers
    import decodability
    import measure_decodability
    import measure_own_codes
except ImportError as absent:
    skipping.skip(str(absent))


def unread(records):
    for each in records:
        what = "{kind}, {module} dots, {seen}, {reader}: {read} of {of} read".format(**each)
        print(what)
        if each["read"] < each["of"]:
            yield what


def below_grade_a(records):
    for each in records:
        what = "{kind}, {module} dots: decodability {worst:.2f}".format(**each)
        print(what)
        if decodability.grade(each["worst"]) != "A":
            yield what


def main():
    if not pathlib.Path(code_readers.JAVA_LIBRARY).exists():
        skipping.skip(f"{code_readers.JAVA_LIBRARY} is not installed")
    program = pathlib.Path(sys.argv[1]).resolve()
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        read = measure_own_codes.measure(program, pool, modules=(2, 3), resolutions=[RESOLUTION],
                                         phases=2, count=8)
    margins = measure_decodability.measure(program, None, modules=[3], resolutions=[RESOLUTION],
                                           count=2, others={})
    failed = [*unread(read), *below_grade_a(margins)]
    if failed:
        sys.exit("Not good enough: " + "; ".join(failed))


if __name__ == "__main__":
    main()

"""Ending a check that cannot be made on this machine, in the way that CTest understands."""
import shutil
import sys

SKIPPED = 77


def skip(why):
    print(f"Skipped: {why}")
    sys.exit(SKIPPED)


def skip_without(programs):
    for program in programs:
        if shutil.which(program) is None:
            skip(f"{program} is not installed")

#!/usr/bin/python3
"""Measures everything and writes docs/performance.md: run.py BUILD [--brief].

BUILD is the folder of a release build of the target "benchmarks". With --brief everything runs once
on small inputs, with those peers that are there, and what is written stays in BUILD/benchmark:
such figures are not published.
"""
import json
import pathlib
import subprocess
import sys

sys.dont_write_bytecode = True

import goals
import machine
import pages
import plot
import processes
import report
import stages
import wire

HERE = pathlib.Path(__file__).resolve().parent


def measure(build, folder, brief):
    bin = build / "bin"
    small = ["--small"] if brief else []
    subprocess.run([sys.executable, HERE / "inputs.py", folder, *small], check=True)
    photo_size = (400, 300) if brief else (4000, 3000)
    stages_program = bin / "bench_stages"
    parts = {
        "machine": lambda: machine.describe(build),
        "processes": lambda: processes.measure(bin, folder, photo_size, brief),
        "start": lambda: processes.measure_start(bin, brief),
        "encode_memory": lambda: processes.measure_encode_memory(bin, folder, brief),
        "stages": lambda: stages.measure(stages_program, folder, brief),
        "server": lambda: processes.measure_server(bin, brief),
        "pages": lambda: pages.measure(bin, folder, brief),
        "growth": lambda: stages.measure_growth(stages_program, folder, brief),
        "wire": lambda: wire.measure(bin, folder, HERE.parent, brief),
    }
    results = {}
    for name, part in parts.items():
        print(f"Measuring: {name.replace('_', ' ')} ...", flush=True)
        results[name] = part()
        if name == "machine" and results[name]["others"] > 0.3 and not brief:
            print("Other programs are running: figures will be worse than they need be.")
    return results


def write(results, docs):
    template = (HERE / "performance.md.in").read_text()
    notes = (HERE / "notes.md").read_text()
    (docs / "performance.md").write_text(report.fill(template, results, notes))
    points = report.growth_points(results["growth"])
    (docs / "growth.svg").write_text(plot.growth_svg(points, goals.GROWTH))
    print(f"Written: {docs / 'performance.md'}, {docs / 'growth.svg'}")


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    brief = "--brief" in sys.argv[2:]
    folder = build / "benchmark"
    folder.mkdir(exist_ok=True)
    results = measure(build, folder, brief)
    (folder / "results.json").write_text(json.dumps(results, indent=2) + "\n")
    write(results, folder if brief else HERE.parent / "docs")


if __name__ == "__main__":
    main()

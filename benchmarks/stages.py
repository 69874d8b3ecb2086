"""Runs bench_stages and takes medians."""
import collections
import json
import statistics
import subprocess


def run(program, result_file, options):
    """Runs it with the options and returns its measurements: one record for each run."""
    subprocess.run(
        [program, f"--benchmark_out={result_file}", "--benchmark_out_format=json", *options],
        check=True,
        stdout=subprocess.DEVNULL,
        stderr=subprocess.PIPE,  # the library's notices: one picture is refused
    )
    records = json.loads(result_file.read_text())["benchmarks"]
    return [record for record in records if record["run_type"] == "iteration"]


def medians(records):
    """{"NAME/SET": {"ms": ..., each counter: ...}}, in the order they were measured in."""
    groups = collections.defaultdict(list)
    for record in records:
        groups[record["run_name"].removesuffix("/real_time")].append(record)
    result = {}
    for name, runs in groups.items():
        result[name] = {"ms": statistics.median(run["real_time"] for run in runs)}
        for counter in ("copies", "read", "written", "dots"):
            if counter in runs[0]:
                result[name][counter] = statistics.median(run[counter] for run in runs)
    return result


def measure(program, folder, brief):
    """Figures of each stage with each instruction set: {stage: {set: {"ms", "copies", ...}}}."""
    options = ["--benchmark_filter=-^growth/", f"--photo={folder / 'photo.jpg'}"]
    if brief:
        options += ["--page=640x800", "--benchmark_min_time=0.0001"]
    else:
        options += ["--benchmark_min_time=0.05", "--benchmark_repetitions=9"]
    stages = {}
    for name, median in medians(run(program, folder / "stages.json", options)).items():
        stage, _, instruction_set = name.rpartition("/")
        stages.setdefault(stage, {})[instruction_set] = median
    return stages


def measure_growth(program, folder, brief):
    """[{"dots", "ms"}], fewest dots first."""
    options = ["--benchmark_filter=^growth/"]
    if brief:
        options += ["--most-megadots=2", "--benchmark_min_time=0.0001"]
    else:
        options += ["--benchmark_min_time=0.05", "--benchmark_repetitions=9"]
    return list(medians(run(program, folder / "growth.json", options)).values())

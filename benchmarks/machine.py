"""The machine and the programs that were measured."""
import os
import platform
import re
import subprocess
import time

PEERS = ("python3-pil", "graphicsmagick", "libvips-tools", "netpbm", "ghostscript", "mupdf-tools",
         "poppler-utils", "libjpeg62-turbo", "libhwy-dev", "libbenchmark-dev")


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, env={**os.environ, "LC_ALL": "C"}
                          ).stdout


def processor():
    told = dict(re.findall(r"^\s*([^:\n]+):\s+(.+)$", output_of("lscpu"), re.MULTILINE))
    wanted = (("Model name", "{}"), ("Architecture", "{}"), ("CPU family", "family {}"),
              ("Model", "model {}"), ("CPU(s)", "{} cores"), ("Hypervisor vendor", "under {}"),
              ("L1d cache", "L1d {}"), ("L2 cache", "L2 {}"), ("L3 cache", "L3 {}"))
    return ", ".join(words.format(told[name]) for name, words in wanted if name in told)


def memory_gigabytes():
    with open("/proc/meminfo", encoding="ascii") as file:
        return int(re.search(r"MemTotal:\s+(\d+)", file.read()).group(1)) * 1024 / 1e9


def versions():
    found = {}
    for package in PEERS:
        told = output_of("dpkg-query", "--show", "--showformat=${Version}\\n", package)
        if told:
            found[package] = told.splitlines()[0]
    return found


def compiler(build):
    """The one that the build was configured with."""
    cache = (build / "CMakeCache.txt").read_text()
    name = re.search(r"^CMAKE_CXX_COMPILER:\w+=(.+)$", cache, re.MULTILINE).group(1)
    kind = re.search(r"^CMAKE_BUILD_TYPE:\w+=(.+)$", cache, re.MULTILINE).group(1)
    return f"{output_of(name, '--version').splitlines()[0]}, {kind}"


def others_running():
    """How many other programs ran, on average over two seconds. The system's load average would
    still include the build."""
    counts = []
    for _ in range(40):
        with open("/proc/stat", encoding="ascii") as file:
            counts.append(int(re.search(r"procs_running (\d+)", file.read()).group(1)) - 1)
        time.sleep(0.05)
    return sum(counts) / len(counts)


def describe(build):
    release = platform.freedesktop_os_release()
    return {
        "processor": processor(),
        "memory": memory_gigabytes(),
        "system": f"{release['PRETTY_NAME']}, Linux {platform.release()}",
        "compiler": compiler(build),
        "versions": versions(),
        "others": others_running(),
    }

"""Puts the measurements into the text of performance.md.in."""
import datetime
import re

import goals


def table(head, rows):
    """A Markdown table; columns of figures are aligned right."""
    rows = [tuple(map(str, row)) for row in rows]
    figure = re.compile(r"(-?[\d.,]+( \(.*\)| MB| ms| copies)?)?")
    numeric = [all(figure.fullmatch(row[i]) for row in rows) for i in range(len(head))]
    rule = ["---:" if is_number else "---" for is_number in numeric]
    return "\n".join("| " + " | ".join(row) + " |" for row in [head, rule, *rows])


def milliseconds(value):
    return f"{value:.3g}" if value < 1000 else f"{value:.0f}"


def machine_text(machine, stages):
    copy = goals.best(stages["copy"])
    rows = [
        ("processor", machine["processor"]),
        ("memory", f"{machine['memory']:.1f} GB"),
        ("system", machine["system"]),
        ("compiler", machine["compiler"]),
        ("the unit: copying the pixels of a page", f"{milliseconds(copy['ms'])} ms"),
        ("other programs running when it began", f"{machine['others']:.1f}"),
        ("measured on", datetime.date.today().isoformat()),
        ("packages", ", ".join(f"{name} {v}" for name, v in machine["versions"].items())),
    ]
    return table(("", ""), rows)


def goals_text(results):
    rows = [goal.row() for goal in goals.all_goals(results)]
    return table(("what", "measured", "goal: at most", ""), rows)


def stages_text(stages):
    """Those without a count of bytes."""
    sets = sorted({name for row in stages.values() for name in row},
                  key=list(goals_order(stages)).index)
    rows = []
    for stage, measured in stages.items():
        if stage == "copy" or stage.startswith("encode"):
            continue
        cells = [cell(measured.get(name)) for name in sets]
        rows.append((stage, *cells))
    return table(("stage", *sets), rows)


def goals_order(stages):
    """The instruction sets, the slowest first."""
    return max(stages.values(), key=len)


def cell(measured):
    return f"{measured['copies']:.3g} ({milliseconds(measured['ms'])} ms)" if measured else ""


def encode_text(stages):
    rows = []
    for stage, sets in stages.items():
        if not stage.startswith("encode, "):
            continue
        last = goals.best(sets)
        read, written = last["read"], last["written"]
        each = f"{last['ms'] * 1e6 / (read + written):.3g}" if written else ""
        rows.append((stage.removeprefix("encode, "), f"{read:,.0f}",
                     f"{written:,.0f}" if written else "", milliseconds(last["ms"]),
                     f"{last['copies']:.3g}", each))
    return table(("picture", "bytes read", "bytes written", "ms", "copies",
                  "ns per byte read or written"), rows)


PHOTO_STAGES = ("decode, photo", "resample, photo to page", "dither, one core", "pack",
                "encode, photo")


def photo_stages_text(stages, process):
    """The stages of the photo job on one core each, and the whole job."""
    parts = [(name, goals.best(stages[name])["ms"]) for name in PHOTO_STAGES]
    total = sum(ms for _, ms in parts)
    parts += [("all of these, one after the other", total), ("the whole program", process * 1000)]
    return table(("stage", "ms", "of their sum"),
                 [(name, milliseconds(ms), f"{ms / total:.2f}") for name, ms in parts])


def process_text(rows):
    ours = rows[0]["seconds"]
    return table(
        ("program", "to one bit by", "ms", "ours in its time", "user ms", "peak MB"),
        [(row["name"], row["how"], milliseconds(row["seconds"] * 1000),
          f"{ours / row['seconds']:.2f}", milliseconds(row["user"] * 1000),
          f"{row['megabytes']:.1f}") for row in rows])


def encode_memory_text(rows):
    return table(("picture", "bytes written", "peak MB", "bytes for each dot"),
                 [(row["kind"], f"{row['sent']:,}", f"{row['megabytes']:.1f}",
                   f"{row['megabytes'] * 1e6 / row['dots']:.2f}") for row in rows])


def growth_points(growth):
    """(millions of dots, nanoseconds per dot)"""
    return [(row["dots"] / 1e6, row["ms"] * 1e6 / row["dots"]) for row in growth]


def growth_text(growth):
    least = min(each for _, each in growth_points(growth))
    rows = [(f"{millions:.0f}", milliseconds(row["ms"]), f"{each:.3f}", f"{each / least:.2f}")
            for row, (millions, each) in zip(growth, growth_points(growth))]
    return table(("million dots", "ms", "ns per dot", "against the fastest"), rows)


def start_text(start):
    return table(("program", "ms"), [(name, f"{ms:.2f}") for name, ms in start.items()])


def pages_text(pages):
    rows = [("Tavio, the program kept, two threads", f"{pages['kept']:.0f}"),
            ("Tavio, the program started for each page, two threads", f"{pages['started']:.0f}")]
    if "pdftoppm" in pages:
        rows.append(("poppler-utils, -mono, in a loop", f"{pages['pdftoppm']:.0f}"))
    return table(("", "pages a second"), rows)


def server_text(server):
    rows = [("tickets a second, one thread", f"{server['one']:,.0f}"),
            (f"tickets a second, {server['threads']} threads", f"{server['all']:,.0f}"),
            ("their ratio", f"{server['ratio']:.2f}"),
            ("bytes of memory for a printer", f"{server['printer']:,.0f}"),
            ("more while it prints a submitted job, on its thread", f"{server['running']:,.0f}"),
            ("for a waiting job", f"{server['waiting job']:,.0f}")]
    return table(("", ""), rows)


def wire_text(rows):
    return table(
        ("document", "settings", "dots", "bytes sent", "plain one-bit picture", "sent / plain",
         "s at 10 kB/s", "s at 100 kB/s"),
        [(row["document"], row["settings"], "{} x {}".format(*row["dots"]), f"{row['sent']:,}",
          f"{row['plain']:,}", f"{row['sent'] / row['plain']:.2f}",
          f"{row['sent'] / 10_000:.1f}", f"{row['sent'] / 100_000:.2f}") for row in rows])


def fill(template, results, notes):
    """The document. Every {{name}} of the template is replaced; an unknown or remaining name is an
    error."""
    processes = results["processes"]
    texts = {
        "machine": machine_text(results["machine"], results["stages"]),
        "goals": goals_text(results),
        "stages": stages_text(results["stages"]),
        "encode": encode_text(results["stages"]),
        "encode memory": encode_memory_text(results["encode_memory"]),
        "growth": growth_text(results["growth"]),
        "start": start_text(results["start"]),
        "server": server_text(results["server"]),
        "pages": pages_text(results["pages"]),
        "wire": wire_text(results["wire"]),
        "photo stages": photo_stages_text(results["stages"], processes["photo"][0]["seconds"]),
        "notes": notes.strip(),
        **{name: process_text(rows) for name, rows in processes.items()},
    }
    used = set(re.findall(r"\{\{(.+?)\}\}", template))
    if used != set(texts):
        raise SystemExit(f"performance.md.in and report.py differ: {used ^ set(texts)}")
    return re.sub(r"\{\{(.+?)\}\}", lambda match: texts[match.group(1)], template)

"""Prints what the benchmarks measured, as tables. Argument: the folder of their JSON files."""

import json
import math
import pathlib
import sys

PEERS = ["pcre2", "re2", "regex", "sscanf", "hand"]
WORKLOADS = "abcdef"


def load_medians(path):
    """The median of each benchmark by its name: its counters, and its processor time."""
    runs = json.loads(path.read_text())["benchmarks"]
    return {run["run_name"]: run for run in runs if run.get("aggregate_name") == "median"}


def print_table(header, rows):
    table = [header] + rows
    widths = [max(map(len, column)) for column in zip(*table)]
    for row in table:
        print("  ".join(cell.rjust(width) for cell, width in zip(row, widths)).rstrip())


def ratio(medians, name, peer):
    if peer not in medians:
        return None
    return medians[name]["cpu_time"] / medians[peer]["cpu_time"]


def shown(value):
    return "-" if value is None else f"{value:.2f}"


def report_messages(medians):
    rows = []
    columns = [[] for _ in range(len(PEERS) + 2)]
    for w in WORKLOADS:
        engine = medians[f"{w}/engine"]
        ratios = [ratio(medians, f"{w}/engine", f"{w}/{peer}") for peer in PEERS]
        ratios += [ratio(medians, f"{w}/compile/engine", f"{w}/compile/{peer}")
                   for peer in ("pcre2", "re2")]
        for column, value in zip(columns, ratios):
            if value is not None:
                column.append(value)
        rows.append([w, f"{engine['cpu_time'] / engine['messages']:.0f}"]
                    + [shown(value) for value in ratios[:len(PEERS)]]
                    + [f"{engine['allocations']:g}",
                       f"{medians[f'{w}/compile/engine']['cpu_time'] / 1000:.1f}"]
                    + [shown(value) for value in ratios[len(PEERS):]])
    means = [shown(math.exp(sum(map(math.log, column)) / len(column))) for column in columns]
    rows.append(["mean", ""] + means[:len(PEERS)] + ["", ""] + means[len(PEERS):])
    print("The engine: ns a message, its time over that of each peer, allocations a message,")
    print("us to compile, and that over what each peer needs. Means are geometric.\n")
    print_table(["", "ns"] + [f"/{peer}" for peer in PEERS]
                + ["allocs", "compile us", "/pcre2", "/re2"], rows)


folder = pathlib.Path(sys.argv[1])
report_messages(load_medians(folder / "messages_bench.json"))

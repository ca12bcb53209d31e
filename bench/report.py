"""Prints the results of the benchmarks as tables. Argument: the folder of their JSON files."""

import json
import math
import pathlib
import sys

PEERS = ["pcre2", "re2", "regex", "sscanf", "hand"]
WORKLOADS = "abcdef"


def load_medians(path):
    """Returns the median run of each benchmark by name, with its counters and processor time."""
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
    print("The engine: ns per message, ratio of its time to that of each peer, allocations per")
    print("message, us to compile, and ratio to the compile time of each peer. Means are")
    print("geometric.\n")
    print_table(["", "ns"] + [f"/{peer}" for peer in PEERS]
                + ["allocs", "compile us", "/pcre2", "/re2"], rows)


def report_shell(medians):
    rows = []
    for w in WORKLOADS:
        if f"{w}/lines/shell" not in medians:
            continue
        row = [w]
        for cut in ("lines", "limit"):
            engine, shell = (medians[f"{w}/{cut}/{who}"] for who in ("engine", "shell"))
            messages, values = engine["messages"], engine["values"]
            above = (shell["cpu_time"] - engine["cpu_time"]) / messages
            row += [f"{engine['cpu_time'] / messages:.0f}", f"{shell['cpu_time'] / messages:.0f}",
                    f"{above:.1f}"]
            if cut == "lines":
                row += [f"{values / messages:.1f}", f"{25 + 10 * values / messages:.0f}"]
        rows.append(row)
    print("\nThe shell, a delivery of 1 MiB: ns per message of the engine and of the shell, what")
    print("the shell adds, values captured per message, and the goal: 25 ns plus 10 ns per value.")
    print("Then the same for a text without end-of-message characters, which is cut into messages")
    print("of 2048 bytes.\n")
    print_table(["", "engine", "shell", "added", "values", "goal", "uncut: engine", "shell",
                 "added"], rows)


def main(folder):
    report_messages(load_medians(folder / "messages_bench.json"))
    report_shell(load_medians(folder / "shell_bench.json"))


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))

"""Prints the results of messages_bench and shell_bench. Argument: the folder of their results."""

import math
import pathlib
import sys

from results import load_minima, print_goals, print_table

PEERS = ["pcre2", "re2", "regex", "sscanf", "hand"]
COMPILERS = ["pcre2", "re2"]
WORKLOADS = "abcdef"
SHELL_WORKLOADS = "abcdf"
SHELL_KINDS = {
    "single": "single: one message per delivery",
    "lines": "lines: deliveries of 1 MiB",
    "limit": "limit: deliveries of 1 MiB without end-of-message characters, cut at 2048 bytes",
}

# What a delivery of one message with three captures may cost in addition to the engine, on a
# machine where PCRE2 takes the second time for a message of workload a. In nanoseconds.
SHELL_GOAL, SHELL_GOAL_PCRE2 = 45, 52


def ratios(runs, prefix, peers):
    """Returns the ratio of the engine's time to that of each peer; None for one without results."""
    engine = runs[f"{prefix}/engine"]["cpu_time"]
    times = [runs.get(f"{prefix}/{peer}", {}).get("cpu_time") for peer in peers]
    return [time and engine / time for time in times]


def geometric_mean(values):
    """Returns the geometric mean, without the values that are None."""
    logarithms = [math.log(value) for value in values if value is not None]
    return math.exp(sum(logarithms) / len(logarithms))


def shown(value):
    """Returns a ratio as text; None is a peer that does not exist."""
    return "-" if value is None else f"{value:.2f}"


def per_message(run, messages):
    """Returns the nanoseconds per message of a run."""
    return run["cpu_time"] / messages


def report_matching(runs):
    """Prints what matching takes, and its goals."""
    table = {w: ratios(runs, w, PEERS) for w in WORKLOADS}
    means = [geometric_mean(column) for column in zip(*table.values())]
    rows = []
    for w, row in table.items():
        engine = runs[f"{w}/engine"]
        rows.append([w, f"{per_message(engine, engine['messages']):.1f}", *map(shown, row),
                     f"{engine['allocations']:g}"])
    print("The engine: ns per message, the ratio of its time to that of each peer, and allocations")
    print("per message. Means are geometric.\n")
    print_table(["", "ns", *(f"/{peer}" for peer in PEERS), "allocs"],
                rows + [["mean", "", *map(shown, means), ""]])

    by_hand = PEERS.index("hand")
    print_goals([("geometric mean over PCRE2", means[PEERS.index("pcre2")], 0.40),
                 *((f"{w} over the hand-written parser", table[w][by_hand], 1.1) for w in "abcdf"),
                 ("e over PCRE2", table["e"][PEERS.index("pcre2")], 0.5),
                 ("allocations per message, the most",
                  max(runs[f"{w}/engine"]["allocations"] for w in WORKLOADS), 0)])


def report_compiling(runs):
    """Prints what compiling takes, and its goals."""
    table = {w: ratios(runs, f"{w}/compile", COMPILERS) for w in WORKLOADS}
    print("\nCompiling: microseconds, and the ratio to the time of each peer.\n")
    print_table(["", "us", *(f"/{peer}" for peer in COMPILERS)],
                [[w, f"{runs[f'{w}/compile/engine']['cpu_time'] / 1000:.2f}", *map(shown, row)]
                 for w, row in table.items()])
    print_goals([(f"compiling {w} over PCRE2", row[COMPILERS.index("pcre2")], 0.3)
                 for w, row in table.items()])


def shell_cost(runs, workload, kind):
    """Returns the times of the engine, of the shell, and what the shell adds, per message."""
    engine, shell = (runs[f"{workload}/{kind}/{who}"] for who in ("engine", "shell"))
    times = [per_message(run, engine["messages"]) for run in (engine, shell)]
    return times + [times[1] - times[0]]


def print_shell(runs, kind):
    """Prints the table of a kind of deliveries."""
    rows = []
    for w in SHELL_WORKLOADS:
        engine = runs[f"{w}/{kind}/engine"]
        rows.append([w, *(f"{time:.1f}" for time in shell_cost(runs, w, kind)),
                     f"{engine['values'] / engine['messages']:.1f}",
                     f"{runs[f'{w}/{kind}/shell']['allocations']:g}"])
    print_table(["", "engine", "shell", "added", "values", "allocs"], rows)


def report_shell(runs, message_runs):
    """Prints what the shell takes, and its goals. message_runs: those of messages_bench."""
    print("\nThe shell: ns per message of the engine and of the shell, what the shell adds,")
    print("values per message, and allocations per delivery.")
    for kind, title in SHELL_KINDS.items():
        print(f"\n{title}:\n")
        print_shell(runs, kind)

    pcre2 = message_runs["a/pcre2"]
    scale = per_message(pcre2, pcre2["messages"]) / SHELL_GOAL_PCRE2
    most = {kind: max(runs[f"{w}/{kind}/shell"]["allocations"] for w in SHELL_WORKLOADS)
            for kind in SHELL_KINDS}
    print_goals([("ns added to a delivery of one message of a", shell_cost(runs, "a", "single")[2],
                  SHELL_GOAL * scale),
                 # The shell keeps no memory for texts as long as the deliveries of 1 MiB.
                 *((f"allocations per delivery, {kind}", most[kind], 0 if kind == "single" else 1)
                   for kind in SHELL_KINDS)])


def main(folder):
    """Prints everything."""
    messages = load_minima(folder, "messages_bench")
    report_matching(messages)
    report_compiling(messages)
    report_shell(load_minima(folder, "shell_bench"), messages)


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))

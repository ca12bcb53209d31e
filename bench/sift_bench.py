"""Compares the processor time of sift with that of mawk, perl and ripgrep, over the same messages.

Arguments: the folder with sift, where the messages are written, too; the number of messages; and
the number of rounds. Each round runs each command once; the least time of a command counts. Peers
that aren't installed are left out.
"""

import os
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys

from results import print_goals, print_table

PARSING_STRING = "'T=' t:float=.# 'H=' h:integer=# 'P=' p:integer=#"
REGEX = r"^T=([-+]?[0-9]+(?:\.[0-9]*)?) H=([0-9]+) P=([0-9]+)"
NUMBER = re.compile(r"[-+]?[0-9]+(?:\.[0-9]+)?")
CHECKED = 1000

# Name, command, and which lines of its output have the values of a message; None: the output is the
# number of messages.
COMMANDS = [
    ("sift --count", ["sift", "--count", PARSING_STRING], None),
    ("sift", ["sift", PARSING_STRING], slice(None)),
    ("sift --csv", ["sift", "--csv", PARSING_STRING], slice(1, None)),
    ("sift --json", ["sift", "--json", PARSING_STRING], slice(None, -1)),
    ("mawk", ["mawk", "-F", "[= ]", "{ print $2, $4, $6 }"], slice(None)),
    ("mawk, as numbers", ["mawk", "-F", "[= ]", "{ print $2 + 0, $4 + 0, $6 + 0 }"], slice(None)),
    ("perl", ["perl", "-ne", f'print "$1 $2 $3\\n" if /{REGEX}/'], slice(None)),
    ("rg --only-matching", ["rg", "--no-line-number", "--only-matching", "--replace", "$1 $2 $3",
                            REGEX], slice(None)),
    ("rg --count", ["rg", "--count", REGEX], None),
]
# The most processor time that a command may take, as a ratio to that of mawk.
GOALS = {"sift --count": 0.6, "sift": 0.8, "sift --csv": 0.9, "sift --json": 1.2}


def write_messages(path, count):
    """Writes messages of three numbers, the same in each run."""
    numbers = random.Random(1)
    with path.open("w", encoding="ascii") as file:
        for _ in range(count):
            file.write(f"T={numbers.randrange(-200, 1200) / 10:.1f} H={numbers.randrange(101)} "
                       f"P={numbers.randrange(950, 1050)}\n")


def find_commands(folder):
    """Returns the commands that can run, by name, with the path of the program in each."""
    found = {}
    for name, (program, *arguments), lines in COMMANDS:
        path = folder / program if program == "sift" else shutil.which(program)
        if path is not None:
            found[name] = ([str(path), *arguments], lines)
    return found


def run(arguments, messages, output):
    """Runs a command over the messages, with its output to a file."""
    subprocess.run([*arguments, str(messages)], stdout=output, check=True,
                   env={**os.environ, "LC_ALL": "C"})


def last_numbers(line):
    """Returns the last three numbers in a line: the values of a message."""
    return [float(number) for number in NUMBER.findall(line)[-3:]]


def check_output(name, arguments, lines, messages):
    """Ends the program unless a command prints the values or the number of the messages."""
    expected = [last_numbers(line) for line in messages.read_text().splitlines()]
    output = messages.with_suffix(".out")
    with output.open("w") as file:
        run(arguments, messages, file)
    printed = output.read_text().splitlines()
    values = [last_numbers(line) for line in printed[lines or slice(None)]]
    if values != ([[len(expected)]] if lines is None else expected):
        raise SystemExit(f"{name} prints something else than the messages contain: {output}")


def processor_time(arguments, messages):
    """Returns the seconds that a command takes, of the user and of the system."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    run(arguments, messages, subprocess.DEVNULL)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime


def measure(commands, messages, rounds):
    """Returns the least time of each command."""
    times = {name: [] for name in commands}
    for _ in range(rounds):
        for name, (arguments, _) in commands.items():
            times[name].append(processor_time(arguments, messages))
    return {name: min(measured) for name, measured in times.items()}


def report(times, count):
    """Prints the times of the commands, and their ratios to mawk."""
    ratios = {name: time / times["mawk"] for name, time in times.items()} if "mawk" in times else {}
    print(f"sift and its peers, {count} messages: seconds of processor time, ns per message, and")
    print("the ratio to mawk.\n")
    print_table(["", "s", "ns", "/mawk"],
                [[name, f"{time:.2f}", f"{time / count * 1e9:.0f}",
                  f"{ratios[name]:.2f}" if name in ratios else "-"]
                 for name, time in times.items()])
    print_goals([(f"{name} over mawk", ratios.get(name), goal) for name, goal in GOALS.items()])


def main(folder, count, rounds):
    """Measures everything and prints it."""
    messages, sample = folder / "sift_bench.txt", folder / "sift_bench.sample"
    write_messages(messages, count)
    write_messages(sample, CHECKED)
    commands = find_commands(folder)
    for name, (arguments, lines) in commands.items():
        check_output(name, arguments, lines, sample)
    report(measure(commands, messages, rounds), count)


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]), int(sys.argv[2]), int(sys.argv[3]))

"""Plants faults one at a time, and reports those that the tests don't notice."""

import argparse
import collections
import concurrent.futures
import functools
import json
import os
import queue
import random
import shlex
import subprocess
import sys
import tempfile
import time

import clang.cindex

import faults as finder
import guards

ROOT = os.getcwd()
WORK = os.path.join(ROOT, 'build/mutate')
LIST = 'mutation/equivalent_faults.txt'
SOURCES = ('Common/', 'actor/')

# The test programs that can reach a folder, and their arguments if they aren't of GoogleTest.
ACTOR_PROGRAMS = ['actor_tests', 'allocation_tests', 'plugin_tests', 'replay_shell']
PROGRAMS = {
    'Common/Pattern': ['pattern_tests', 'replay_engine', 'replay_reference', 'explain_tests',
                       *ACTOR_PROGRAMS, 'exhaustive'],
    'Common/Explain': ['explain_tests', 'replay_explain', 'replay_reference', 'suggest_tests'],
    'Common/Suggest': ['suggest_tests', 'replay_suggest'],
    'actor': ACTOR_PROGRAMS,
}
ARGUMENTS = {'exhaustive': ['3', '2']}
for name in ('engine', 'explain', 'reference', 'shell', 'suggest'):
    ARGUMENTS[f'replay_{name}'] = [f'corpus/{name}', f'regressions/{name}']

QUICK = 0.5  # seconds; quicker tests of a program run in one process

# A part of a test program: filter is one test of GoogleTest, or None for the whole program.
Part = collections.namedtuple('Part', 'program filter seconds reached')


class Tree:
    """A copy of the sources with a build of its own."""

    def __init__(self, name, optimization='-O0', guard=''):
        self.root = os.path.join(WORK, name)
        self.build = os.path.join(self.root, 'build')
        listing = ['git', 'ls-files', '-co', '--exclude-standard']
        self.files = [path for path in subprocess.check_output(listing, text=True).split('\n')
                      if os.path.isfile(path)]
        for path in self.files:
            target = os.path.join(self.root, path)
            os.makedirs(os.path.dirname(target), exist_ok=True)
            if not (guard and path.startswith(SOURCES) and os.path.exists(target)):
                guards.write_if_changed(target, read(path))
        flags = f'-w -Wno-c++11-narrowing -Wno-invalid-constexpr -D_GLIBCXX_ASSERTIONS {guard}'
        subprocess.run([
            'cmake', '-S', self.root, '-B', self.build, '-G', 'Ninja',
            '-DCMAKE_BUILD_TYPE=Debug', '-DCMAKE_CXX_COMPILER=clang++',
            f'-DCMAKE_CXX_FLAGS_DEBUG={optimization}', f'-DCMAKE_CXX_FLAGS={flags}',
            '-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld', '-DCMAKE_MODULE_LINKER_FLAGS=-fuse-ld=lld',
            '-DWORD_SIFTER_SANITIZE=address,undefined', '-DWORD_SIFTER_TOOLS=OFF'],
            stdout=subprocess.DEVNULL, check=True)

    def compile(self, programs, jobs):
        """Returns what the compiler said if it failed, otherwise None."""
        result = subprocess.run(['ninja', '-C', self.build, f'-j{jobs}', *programs],
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                check=False)
        return result.stdout if result.returncode != 0 else None

    def run(self, program, tests=(), limit=60, **variables):
        """Returns 'passed', 'failed' or 'time limit'."""
        arguments = ARGUMENTS.get(program, [f'--gtest_filter={":".join(tests) or "*"}'])
        environment = dict(
            os.environ, LOCPATH=os.path.join(self.build, 'tests/locales'), GTEST_BRIEF='1',
            GTEST_FAIL_FAST='1', UBSAN_OPTIONS='symbolize=0',
            ASAN_OPTIONS='symbolize=0:hard_rss_limit_mb=2000', **variables)
        process = subprocess.Popen(
            ['sh', '-c', 'ulimit -c 0; ulimit -t "$0"; exec "$@"', str(int(limit) + 1),
             os.path.join(self.build, 'bin', program), *arguments],
            cwd=os.path.join(self.root, 'fuzz'), env=environment, stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
        try:
            code = process.wait(limit * 5 + 20)
        except subprocess.TimeoutExpired:
            code = -9
            os.killpg(process.pid, 9)
            process.wait()
        # A process beyond its limit of processor time gets SIGXCPU.
        return {0: 'passed', -9: 'time limit', -24: 'time limit'}.get(code, 'failed')

    def parts(self, programs, pool):
        """Runs each test once, without a fault, for what it reaches and how long it takes."""
        tests = [(program, test) for program in programs
                 for test in ([None] if program in ARGUMENTS else self.tests(program))]
        return list(pool.map(self.part, *zip(*tests)))

    def part(self, program, test):
        with tempfile.NamedTemporaryFile() as log:
            start = time.monotonic()
            if self.run(program, [test] if test else [], WORD_SIFTER_REACHED=log.name) != 'passed':
                raise SystemExit(f'{program} fails without a fault: {test or ""}')
            reached = frozenset(map(int, read(log.name).split()))
            return Part(program, test, time.monotonic() - start, reached)

    def tests(self, program):
        listing = subprocess.check_output([os.path.join(self.build, 'bin', program),
                                           '--gtest_list_tests'], text=True)
        suite = ''
        for row in listing.split('\n')[1:]:
            if row and row[0] != ' ':
                suite = row.split()[0]
            elif row:
                yield suite + row.split()[0]

    def units(self, folders):
        """Returns the path and Clang's flags of each translation unit of these folders."""
        units = []
        for entry in json.loads(read(os.path.join(self.build, 'compile_commands.json'))):
            if os.path.relpath(entry['file'], self.root).startswith(folders):
                flags = shlex.split(entry['command'])[1:]
                flags = flags[:flags.index('-o')] + ['-ferror-limit=0']
                units.append((entry['file'], [f for f in flags if '-fsanitize' not in f]))
        return units

    def errors_of(self, unit):
        """Returns the places in the sources of each error. An error without one, such as the use of
        a constant with an error, follows from another."""
        parsed = parse(unit)  # the diagnostics are part of it
        errors = [d for d in parsed.diagnostics if d.severity >= d.Error]
        places = list(filter(None, map(self.places_of, errors)))
        if errors and not places:
            raise SystemExit(errors[0].format())
        return places

    def places_of(self, error):
        places = [d.location for d in (error, *error.children)]
        places = [(os.path.relpath(place.file.name, self.root), place.offset)
                  for place in places if place.file]
        return [place for place in places if place[0].startswith(SOURCES)]


def parse(unit):
    return clang.cindex.Index.create().parse(*unit)


def write(path, text):
    with open(path, 'wb') as file:
        file.write(text)


def read(path):
    with open(path, 'rb') as file:
        return file.read()


def folder_of(fault):
    return next(folder for folder in PROGRAMS if fault.path.startswith(folder + '/'))


def key_of(fault):
    return fault.path, fault.line, fault.change


def run_parts(tree, parts, before=None, **variables):
    """Runs parts of test programs until one fails: the quick ones of each program in one process,
    then the others, each by itself. before: returns a problem with the program, or None."""
    groups = collections.defaultdict(list)
    for part in parts:
        groups[part.seconds if part.seconds >= QUICK else 0, part.program].append(part)
    for (_, program), group in sorted(groups.items(), key=lambda item: item[0][0]):
        if before is not None and before(program):
            return 'not compiled'
        seconds = sum(p.seconds for p in group)
        result = tree.run(program, [p.filter for p in group if p.filter], 1 + 4 * seconds,
                          **variables)
        if result != 'passed':
            return result
    return 'survived'


def run_alone(tree, fault, parts):
    """Compiles a fault by itself, and runs all parts."""
    path = os.path.join(tree.root, fault.path)
    source = read(path)
    text = fault.text if fault.form == 'statement' or fault.text[0] in '{"' else f'({fault.text})'
    write(path, source[:fault.begin] + text.encode() + source[fault.end:])
    try:
        return run_parts(tree, parts, lambda program: tree.compile([program], 1))
    finally:
        write(path, source)


def read_list():
    """Returns the keys of the listed faults."""
    entries = set()
    for row in read(LIST).decode().split('\n'):
        if row.startswith(' ' * 8):
            entries.add((path, line, row.strip()))
        elif row.startswith(' ' * 4):
            line = row.strip()
        elif row and row[0] != '#':
            path, _ = row.split(': ', 1)  # and the reason
    return entries


def find_faults(tree, pool):
    done = set()  # Two threads may both find the faults of a header.
    found = pool.map(lambda unit: finder.faults_of(parse(unit), tree.root, done),
                     tree.units(SOURCES))
    return sorted(set().union(*found))


def run_all(faults, constants, options, pool, report):
    """Reports the result of each fault as soon as it is known."""
    folders = {folder_of(f) for f in faults}
    programs = list(dict.fromkeys(p for folder in PROGRAMS if folder in folders
                                  for p in PROGRAMS[folder]))
    # Optimized: it is compiled once and run often.
    count = len(faults) + len(constants)
    guarded = Tree('guarded', '-O1',
                   f'-include {ROOT}/mutation/guard.h -DWORD_SIFTER_FAULTS={count}')
    sources = {p: read(p) for p in guarded.files if p.startswith(SOURCES)}
    planted = guards.plant(guarded.root, sources, [*faults, *constants], guarded.units(''),
                           functools.partial(pool.map, guarded.errors_of))
    problem = guarded.compile(programs, options.jobs)
    if problem:
        raise SystemExit(problem)
    parts = guarded.parts(programs, pool)
    reached = frozenset().union(*(p.reached for p in parts))
    planted &= set(range(len(faults)))
    print(f'{len(planted)} faults are guarded and {len(planted & reached)} of them reached; the '
          f'tests take {sum(p.seconds for p in parts):.0f} seconds', flush=True)
    alone = [n for n in range(len(faults)) if n not in planted and options.sample is None]
    trees = queue.Queue()
    for i in range(options.jobs if alone else 0):
        trees.put(Tree(f'plain{i}'))
    os.environ['CCACHE_READONLY'] = '1'  # A fault is compiled once; it's no use in a cache.

    def run(number, fault):
        own = [p for p in parts if p.program in PROGRAMS[folder_of(fault)]]
        reaching = [p for p in own if number in p.reached]
        if number in planted:
            return run_parts(guarded, reaching, WORD_SIFTER_FAULT=str(number))
        tree = trees.get()
        try:
            return run_alone(tree, fault, own)
        finally:
            trees.put(tree)

    runs = {pool.submit(run, n, faults[n]): faults[n] for n in [*sorted(planted), *alone]}
    for done in concurrent.futures.as_completed(runs):
        report(runs[done], done.result())


def main():
    parser = argparse.ArgumentParser(prog='scripts/mutate.sh', description=__doc__)
    parser.add_argument('--sample', type=int,
                        help='plant only about this many faults, drawn at random, each of which '
                             'compiles together with the others')
    parser.add_argument('--seed', type=int, help='draw the same sample again')
    parser.add_argument('--path', action='append', default=[],
                        help='plant only in paths that begin like this; may be repeated')
    parser.add_argument('--jobs', type=int, default=os.cpu_count())
    options = parser.parse_args()

    pool = concurrent.futures.ThreadPoolExecutor(options.jobs)
    found = find_faults(Tree('plain0'), pool)
    constants = [f for f in found if f.form == 'constant']
    found = [f for f in found if f.form != 'constant']
    entries = read_list()
    known = collections.Counter(map(key_of, found))
    errors = [f'{LIST}: there is no such fault: {" | ".join(e)}' for e in entries if e not in known]
    chosen = [f for f in found if f.path.startswith(tuple(options.path or SOURCES))]
    print(f'{len(found)} faults, {len(chosen)} of them in {" ".join(options.path) or "all paths"}',
          flush=True)
    if options.sample is not None:
        seed = options.seed if options.seed is not None else random.SystemRandom().randrange(10**6)
        chosen = sorted(random.Random(seed).sample(chosen, min(options.sample, len(chosen))))
        print(f'A sample of {len(chosen)}, --seed {seed}')

    counts = collections.Counter()
    results = collections.defaultdict(list)  # of each key
    with open(os.path.join(WORK, 'results.txt'), 'w', encoding='utf-8') as log:
        def report(fault, result):
            counts[result] += 1
            results[key_of(fault)].append(result)
            if result == 'survived' and key_of(fault) not in entries:
                errors.append('survived: ' + ' | '.join(key_of(fault)))
            print(result, *key_of(fault), sep=' | ', file=log, flush=True)
        run_all(chosen, constants, options, pool, report)
    for key in entries & set(results):
        if len(results[key]) == known[key] and 'survived' not in results[key]:
            errors.append(f'{LIST}: this fault is noticed: {" | ".join(key)}')
    for error in errors:
        print(error)
    print(f'{sum(counts.values())} faults: {counts["failed"]} noticed by a test, '
          f'{counts["time limit"]} by the time limit, {counts["not compiled"]} not compiled, '
          f'{counts["survived"]} survived')
    sys.exit(1 if errors else 0)


main()

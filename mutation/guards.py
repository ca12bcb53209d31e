"""Writes sources that hold many faults at once, each behind a guard; guard.h describes them."""

import collections
import os

# Part of a guarded source, from begin to end, that holds the faults with these ids.
Span = collections.namedtuple('Span', 'begin end ids')


class GuardedSource:
    """The text of one file with its guards."""

    def __init__(self, source, faults):
        """faults: pairs of an id and a fault of this source."""
        self.source = source
        self.text = b''
        self.spans = []
        groups = collections.defaultdict(list)
        for number, fault in faults:
            groups[fault.begin, -fault.end].append((number, fault))
        self.write(0, len(source), sorted(groups.items()))

    def write(self, begin, end, groups):
        while groups:
            (group_begin, group_end), faults = groups[0]
            group_end = -group_end
            inner = [g for g in groups[1:] if g[0][0] < group_end]
            self.text += self.source[begin:group_begin]
            span_begin = len(self.text)
            before, after = guard_of(faults)
            self.text += before
            self.write(group_begin, group_end, inner)
            self.text += after
            self.spans.append(Span(span_begin, len(self.text), [number for number, _ in faults]))
            begin = group_end
            groups = groups[1 + len(inner):]
        self.text += self.source[begin:end]

    def nearest(self, offset):
        """Returns the ids of the smallest guard around a place of the text, or of the next one: an
        error in the initializer of an array is reported at its name."""
        around = [s for s in self.spans if s.begin <= offset < s.end]
        after = [s for s in self.spans if s.begin > offset]
        if around:
            return min(around, key=lambda s: s.end - s.begin).ids
        return min(after).ids if after else []


def guard_of(faults):
    """Returns what goes before and after the code that all these faults replace."""
    forms = {fault.form for _, fault in faults}
    if 'statement' in forms:
        return f'{{ if (!NMutation::IsPlanted({faults[0][0]})) {{ '.encode(), b' } }'
    choices = ''
    for number, fault in faults:
        # On one line, so that __LINE__ stays as it is.
        text = fault.text if '//' in fault.text else ' '.join(fault.text.split('\n'))
        choices += f'NMutation::IsPlanted({number}) ? ({text}) : '
    return f'({choices}{"bool" if "condition" in forms else ""}('.encode(), b'))'


def write_if_changed(path, text):
    if os.path.exists(path):
        with open(path, 'rb') as file:
            if file.read() == text:
                return
    with open(path, 'wb') as file:
        file.write(text)


def plant(root, sources, faults, parse):
    """Writes the guarded sources to root, without the faults that don't compile in a guard, and
    returns the ids of those that are planted. sources: text of each path. parse: yields functions
    that return the errors of a translation unit as pairs of path and offset."""
    planted = dict(enumerate(faults))

    def write(paths):
        for path in paths:
            own = [(n, f) for n, f in planted.items() if f.path == path]
            guarded[path] = GuardedSource(sources[path], own)
            write_if_changed(os.path.join(root, path), guarded[path].text)

    guarded = {}
    write(sources)
    for errors_of_unit in parse():
        while True:
            errors = errors_of_unit()
            if not errors:
                break
            ids = {i for path, offset in errors for i in guarded[path].nearest(offset)}
            if not ids:
                raise SystemExit(f'The guarded sources do not compile: {errors[:5]}')
            paths = {planted.pop(i).path for i in ids}
            write(paths)
    return set(planted)

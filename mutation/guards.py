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
            skipped = len('constexpr') if faults[0][1].form == 'constant' else 0
            self.write(group_begin + skipped, group_end, inner)
            self.text += after
            self.spans.append(Span(span_begin, len(self.text), [number for number, _ in faults]))
            begin = group_end
            groups = groups[1 + len(inner):]
        self.text += self.source[begin:end]

    def around(self, offset):
        """Returns the ids of the smallest guard around a place of the text."""
        around = [s for s in self.spans if s.begin <= offset < s.end]
        return min(around, key=lambda s: s.end - s.begin).ids if around else []

    def after(self, offset):
        """Returns the ids of the first guard after a place of the text, or else of the last one."""
        after = [s for s in self.spans if s.begin > offset]
        return min(after or self.spans[-1:]).ids if self.spans else []


def guard_of(faults):
    """Returns what goes before and after the code that all these faults replace."""
    forms = {fault.form for _, fault in faults}
    if 'constant' in forms:
        return b'const', b''
    if 'statement' in forms:
        return f'{{ if (!NMutation::IsPlanted({faults[0][0]})) {{ '.encode(), b' } }'
    choices = ''
    for number, fault in faults:
        # On one line, so that __LINE__ stays as it is.
        text = fault.text if '//' in fault.text else ' '.join(fault.text.split('\n'))
        choices += f'NMutation::IsPlanted({number}) ? ({text}) : '
    return f'({choices}{"bool" if "condition" in forms else ""}('.encode(), b'))'


def guards_at_fault(guarded, places):
    """Returns the ids of the guards that an error is about: at its last place in a guard, such as the
    declaration of a constant that isn't one, or the next guard, because an error in the initializer
    of an array is reported at its name."""
    ids = [guarded[path].around(offset) for path, offset in reversed(places)]
    return next(filter(None, ids), guarded[places[0][0]].after(places[0][1]))


def write_if_changed(path, text):
    if os.path.exists(path):
        with open(path, 'rb') as file:
            if file.read() == text:
                return
    with open(path, 'wb') as file:
        file.write(text)


def plant(root, sources, faults, units, errors_of):
    """Writes the guarded sources to root, without the faults that don't compile in a guard, and
    returns the ids of those that are planted. sources: text of each path. errors_of: maps
    translation units to their errors, each a list of pairs of path and offset."""
    planted = {i: f for i, f in enumerate(faults) if f.form != 'alone'}

    def write(paths):
        for path in paths:
            own = [(n, f) for n, f in planted.items() if f.path == path]
            guarded[path] = GuardedSource(sources[path], own)
            write_if_changed(os.path.join(root, path), guarded[path].text)

    guarded = {}
    write(sources)
    while units:
        errors = list(errors_of(units))
        unwritable = set()
        for errors_of_unit in filter(None, errors):
            ids = {i for places in errors_of_unit for i in guards_at_fault(guarded, places)}
            if not ids:
                raise SystemExit(f'The guarded sources do not compile: {errors_of_unit[:5]}')
            # Without a constant that has to be one, there may be no other error.
            unwritable |= {i for i in ids if planted[i].form == 'constant'} or ids
        write({planted.pop(i).path for i in unwritable})
        units = [unit for unit, found in zip(units, errors) if found]
    return set(planted)

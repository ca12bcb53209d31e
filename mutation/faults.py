"""Finds the places of a source where a fault can be planted."""

import collections
import re

from clang.cindex import CursorKind as Kind, TypeKind

# begin, end: offsets of the code that is replaced by text. form: how a guard chooses between them:
# 'value', 'condition' or 'statement', or 'alone' if none can. The form 'constant' is no fault: it
# makes a constexpr variable const, so that guards in its initializer can choose. change: what the
# lists of faults show.
Fault = collections.namedtuple('Fault', 'path begin end text form line change')

OPERATORS = {
    '<': ('<=', '>='), '<=': ('<', '>'), '>': ('>=', '<='), '>=': ('>', '<'),
    '==': ('!=',), '!=': ('==',),
    '+': ('-',), '-': ('+',), '*': ('/',), '/': ('*',), '%': ('*',),
    '<<': ('>>',), '>>': ('<<',), '&': ('|',), '|': ('&',), '^': ('|',),
    '+=': ('-=',), '-=': ('+=',), '*=': ('/=',), '/=': ('*=',), '|=': ('&=',), '&=': ('|=',),
    '<<=': ('>>=',), '>>=': ('<<=',),
}
NEGATIONS = {'<': '>=', '<=': '>', '>': '<=', '>=': '<', '==': '!=', '!=': '=='}
OPERATIONS = (Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR, Kind.CALL_EXPR)
LOOPS = (Kind.WHILE_STMT, Kind.FOR_STMT, Kind.DO_STMT)
JUMPS = (Kind.BREAK_STMT, Kind.CONTINUE_STMT, Kind.RETURN_STMT)
INTEGER = re.compile(r'(0[xX][0-9a-fA-F\']+|[0-9\']+)([uUlLzZ]*)')


class Finder:
    """Collects the faults of the code of one file."""

    def __init__(self, path, source):
        self.path = path
        self.source = source  # bytes: offsets of Clang count bytes
        self.faults = {}
        self.conditions = set()  # the places that become true and false, and so need no negation

    def text(self, begin, end):
        return self.source[begin:end].decode()

    def code(self, cursor):
        return self.text(*place(cursor))

    def add(self, begin, end, text, form='value', shown=None):
        old = self.text(begin, end)
        line_begin = self.source.rfind(b'\n', 0, begin) + 1
        line = self.text(line_begin, self.source.find(b'\n', begin)).strip()
        change = f'{short(old)} -> {short(shown or text)}'
        fault = Fault(self.path, begin, end, text, form, line, change)
        self.faults.setdefault((begin, end, text), fault)

    def replace(self, cursor, *texts, form='value'):
        begin, end = place(cursor)
        for text in texts:
            if begin < end and text != self.text(begin, end):
                self.add(begin, end, text, form)

    def visit(self, cursor, parent=None):
        if cursor.kind == Kind.STATIC_ASSERT or cursor.is_default_method():
            return
        children = list(cursor.get_children())
        self.visit_conditions(cursor, children)
        self.visit_operator(cursor, children)
        self.visit_literal(cursor, parent)
        self.visit_statements(cursor, children)
        self.visit_table(cursor, children)
        self.visit_constant(cursor)
        for child in children:
            if needs_constant(cursor, child, self.source):
                self.visit_needed_constant(cursor, child)
            else:
                self.visit(child, cursor)

    def visit_needed_constant(self, cursor, child):
        """A guard can be around an expression with a template argument, but not around that."""
        inner = Finder(self.path, self.source)
        inner.visit(child, cursor)
        for fault in inner.faults.values():
            if cursor.kind == Kind.DECL_REF_EXPR:
                begin, end = place(cursor)
                text = self.text(begin, fault.begin) + fault.text + self.text(fault.end, end)
                fault = fault._replace(begin=begin, end=end, text=text)
            else:
                fault = fault._replace(form='alone')
            self.faults.setdefault((fault.begin, fault.end, fault.text), fault)

    def visit_operator(self, cursor, children):
        operands = list(cursor.get_arguments()) if cursor.kind == Kind.CALL_EXPR else children
        if cursor.kind == Kind.UNARY_OPERATOR:
            self.visit_unary(cursor)
        elif cursor.type.get_canonical().spelling.startswith('std::basic_string<'):
            pass  # it has no other operator
        elif cursor.kind in OPERATIONS and len(operands) == 2 and all(operands):
            begin, end = operands[0].extent.end.offset, operands[1].extent.start.offset
            left, right = place(cursor)
            sign = self.text(begin, end).strip()
            for other in OPERATORS.get(sign, ()):
                if other != NEGATIONS.get(sign) or (left, right) not in self.conditions:
                    operands = self.text(left, begin).rstrip(), self.text(end, right).lstrip()
                    self.add(left, right, f' {other} '.join(operands))

    def visit_unary(self, cursor):
        code = self.code(cursor)
        for sign, other in (('++', '--'), ('--', '++'), ('!', ''), ('-', ''), ('~', '')):
            if code.startswith(sign) and (sign != '!' or place(cursor) not in self.conditions):
                self.replace(cursor, other + code[len(sign):])
                return
            if len(sign) == 2 and code.endswith(sign):
                self.replace(cursor, code[:-2] + other)
                return

    def visit_literal(self, cursor, parent):
        code = self.code(cursor)
        if cursor.kind == Kind.INTEGER_LITERAL:
            match = INTEGER.fullmatch(code)
            if match:
                number = int(match[1].replace("'", ''), 0 if match[1][:2] in ('0x', '0X') else 10)
                form = '0x{:X}{}' if match[1][:2] in ('0x', '0X') else '{}{}'
                others = (number + 1, number - 1) if number else (1,)
                self.replace(cursor, *(form.format(n, match[2]) for n in others))
        elif cursor.kind == Kind.FLOATING_LITERAL and code[:1].isdigit():
            self.replace(cursor, f'{code} + 1')
        elif cursor.kind == Kind.CHARACTER_LITERAL and code[:1] == "'":
            self.replace(cursor, f'char({code} + 1)')
        elif cursor.kind == Kind.STRING_LITERAL and re.match(r'"[^\\"]', code):
            self.replace(cursor, f'"{"#" if code[1] != "#" else "$"}{code[2:]}')
        elif cursor.kind == Kind.CXX_BOOL_LITERAL_EXPR:
            self.replace(cursor, {'true': 'false', 'false': 'true'}.get(code, code))
        elif cursor.kind == Kind.DECL_REF_EXPR and parent.kind != Kind.CASE_STMT:
            self.visit_enumerator(cursor, code)

    def visit_enumerator(self, cursor, code):
        constant = cursor.referenced
        if constant is None or constant.kind != Kind.ENUM_CONSTANT_DECL:
            return
        names = [c.spelling for c in constant.semantic_parent.get_children()]
        if code.endswith(constant.spelling):
            other = names[(names.index(constant.spelling) + 1) % len(names)]
            self.replace(cursor, code[:len(code) - len(constant.spelling)] + other)

    def visit_conditions(self, cursor, children):
        expressions = [c for c in children if c.kind.is_expression()]
        if not expressions:
            return
        if cursor.kind in LOOPS:  # not true: a loop without an end says little
            follower = ';' if cursor.kind == Kind.FOR_STMT else ')'
            self.replace_conditions([c for c in expressions if self.follower(c) == follower][:1],
                                    'false')
        elif cursor.kind == Kind.IF_STMT:
            self.replace_conditions([c for c in expressions if self.follower(c) == ')'][:1],
                                    'true', 'false')
        elif cursor.kind == Kind.CONDITIONAL_OPERATOR:
            self.replace_conditions(expressions[:1], 'true', 'false')
        elif cursor.kind == Kind.BINARY_OPERATOR and len(children) == 2:
            sign = self.text(children[0].extent.end.offset, children[1].extent.start.offset)
            if sign.strip() in ('&&', '||'):
                self.replace_conditions(children, 'true' if sign.strip() == '&&' else 'false')
        elif cursor.kind == Kind.RETURN_STMT:
            self.replace_result(expressions[0], expressions[0].type.get_canonical().kind)

    def replace_conditions(self, conditions, *texts):
        for condition in conditions:
            if self.code(condition) not in ('true', 'false'):
                self.conditions.add(place(condition))
                self.replace(condition, *texts, form='condition')

    def replace_result(self, result, kind):
        if kind == TypeKind.BOOL:
            self.replace_conditions([result], 'true', 'false')
        elif kind == TypeKind.POINTER:
            self.replace(result, 'nullptr')
        elif TypeKind.CHAR_U.value <= kind.value <= TypeKind.INT128.value:
            self.replace(result, '0')

    def follower(self, cursor):
        return self.source[cursor.extent.end.offset:].lstrip()[:1].decode()

    def visit_statements(self, cursor, children):
        if cursor.kind == Kind.CXX_FOR_RANGE_STMT:
            children = children[-1:]
        elif cursor.kind != Kind.COMPOUND_STMT:
            return
        for child in children:
            jump = child.kind in JUMPS and not list(child.get_children())
            if (child.kind.is_expression() or jump) and self.follower(child) == ';':
                end = self.source.index(b';', child.extent.end.offset) + 1
                self.add(child.extent.start.offset, end, ';', 'statement', '(removed)')

    def visit_table(self, cursor, children):
        if cursor.kind != Kind.INIT_LIST_EXPR or 'ARRAY' not in cursor.type.kind.name:
            return
        for cell, other in zip(children, children[1:] + children[-2:-1]):
            if cell.kind in (Kind.INIT_LIST_EXPR, Kind.UNEXPOSED_EXPR, Kind.DECL_REF_EXPR):
                self.replace(cell, self.code(other))

    def visit_constant(self, cursor):
        begin, name = cursor.extent.start.offset, cursor.location.offset
        keyword = self.source.find(b'constexpr', begin, name)
        if cursor.kind == Kind.VAR_DECL and keyword >= 0:
            self.add(keyword, name + len(cursor.spelling), 'const', 'constant')


def needs_constant(cursor, child, source):
    if not child.kind.is_expression():
        return False
    begin = child.extent.start.offset
    return (cursor.kind in (Kind.DECL_REF_EXPR, Kind.CASE_STMT, Kind.ENUM_CONSTANT_DECL) or
            cursor.kind.is_declaration() and
            (begin < cursor.location.offset or source[:begin].rstrip().endswith(b'[')))


def place(cursor):
    return cursor.extent.start.offset, cursor.extent.end.offset


def short(code):
    code = ' '.join(code.split())
    return code if len(code) <= 70 else f'{code[:34]} ... {code[-31:]}'


def faults_of(unit, root, done):
    """Returns the faults of all files below root that the translation unit is the first to use."""
    finders = {}
    for cursor in unit.cursor.get_children():
        name = cursor.location.file.name if cursor.location.file else ''
        if not name.startswith(root + '/'):
            continue
        path = name[len(root) + 1:]
        if path in done or not path.startswith(('Common/', 'actor/')):
            continue
        if path not in finders:
            with open(name, 'rb') as file:
                finders[path] = Finder(path, file.read())
        finders[path].visit(cursor)
    done.update(finders)
    return [f for finder in finders.values() for f in finder.faults.values()]

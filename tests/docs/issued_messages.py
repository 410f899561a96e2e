"""The messages of the module in its source.

A text is put together by `message`, `quoted`, literals, and functions, variables and tables that
lead to them. Whatever is not known before the module runs is a `HOLE` in the text.
"""

import itertools
import re
from dataclasses import dataclass

from cpp_source import (Function, Literal, files, functions_in, is_group, is_word, nested, split,
                        tokens_of)

PREFIX = "ZEPHRA:veltrace:"
IDENTIFIER = re.compile(PREFIX + r"(\w+::?)*\w+")
HOLE = "\0"
CONVERSION = re.compile("%[sd]")

ISSUERS = {
    "VeltraceFatalError": "fatal",
    "VeltraceRecoverableError": "recoverable",
    "issueHostWarning": "warning",
    "raiseHostError": "direct error",
    "raiseFormattedHostError": "direct error",
}


@dataclass(frozen=True, order=True)
class Issued:
    identifier: str
    issued_as: str
    text: str


def source_files(folder):
    return files(folder, "*.cpp", "*.h")


def literals_in(paths):
    """The text of each literal."""
    return {token.text for path in paths for token in tokens_of(path.read_text())
            if isinstance(token, Literal)}


def joined(parts):
    """Every way to put one text of each part after the other."""
    return {"".join(texts) for texts in itertools.product(*parts)}


def runs_in(nodes):
    """What stands between semicolons and braces, at any depth."""
    for run in split(nodes, ";"):
        yield run
        for node in run:
            if hasattr(node, "nodes"):
                yield from runs_in(node.nodes)


def calls_in(nodes):
    """(name, opening bracket, arguments), at any depth."""
    for name, group in zip(nodes, nodes[1:]):
        if is_word(name) and hasattr(group, "nodes"):
            yield name.split("::")[-1], group.opening, split(group.nodes, ",")
    for node in nodes:
        if hasattr(node, "nodes"):
            yield from calls_in(node.nodes)


class Scope:
    """A function with what is known of its parameters and of its variables."""

    def __init__(self, source, function, arguments=None):
        self.source = source
        self.function = function
        # A text that the caller passes is looked at from the caller.
        self.known = {name: set() if kind == "const char *" else {HOLE}
                      for kind, name in function.parameters}
        self.known.update(arguments or {})
        self.variables = {run[run.index("=") - 1]: run[run.index("=") + 1:]
                          for run in runs_in(function.body) if "=" in run[1:]
                          and is_word(run[run.index("=") - 1])}

    def texts(self, nodes):
        """Every text that an expression may be."""
        if "?" in nodes:
            return set().union(*map(self.texts, split(nodes[nodes.index("?") + 1:], ":")))
        if len(nodes) == 1 and isinstance(nodes[0], Literal):
            return {nodes[0].text}
        if len(nodes) == 1 and is_word(nodes[0]):
            return self.named(nodes[0])
        if len(nodes) == 2 and is_word(nodes[0]) and is_group(nodes[1], "("):
            return self.called(nodes[0], [self.texts(run) for run in split(nodes[1].nodes, ",")])
        if len(nodes) == 4 and nodes[1:3] == [".", "str"]:
            return self.streamed(nodes[0])
        if len(nodes) == 3 and nodes[1] == ".":
            return self.source.column(nodes[2]) or {HOLE}
        return {HOLE}

    def named(self, name):
        if name in self.known:
            return self.known[name]
        return self.texts(self.variables[name]) if name in self.variables else {HOLE}

    def called(self, name, arguments):
        if name == "message":
            return joined(arguments)
        if name == "quoted":
            return joined([{'"'}, *arguments, {'"'}])
        if is_group((self.variables.get(name) or [""])[-1], "{"):
            return Scope(self.source, Function([], self.variables[name][-1].nodes)).returned()
        return set().union(*(callee.returned() for callee in self.callees(name, arguments))) \
            or {HOLE}

    def callees(self, name, arguments):
        for function in self.source.functions.get(name, []):
            if len(function.parameters) == len(arguments):
                names = [name for _, name in function.parameters]
                yield Scope(self.source, function, dict(zip(names, arguments)))

    def returned(self):
        returns = [run[run.index("return") + 1:] for run in runs_in(self.function.body)
                   if "return" in run]
        return set().union(*map(self.texts, returns))

    def streamed(self, stream):
        """What the functions write that are handed the stream."""
        texts = set()
        for name, _, arguments in calls_in(self.function.body):
            if [stream] in arguments:
                for callee in self.callees(name, [{HOLE}] * len(arguments)):
                    texts.update(*(joined(map(callee.texts, split(run, "<<")[1:]))
                                   for run in runs_in(callee.function.body) if "<<" in run))
        return texts

    def issued(self):
        """Every message that is issued here, or in a function that is handed a text of it."""
        for name, _, arguments in calls_in(self.function.body):
            values = [self.texts(run) for run in arguments]
            if name in ISSUERS and len(values) >= 2:
                for identifier, text in itertools.product(*values[:2]):
                    if name == "raiseFormattedHostError":
                        text = CONVERSION.sub(HOLE, text)
                    if identifier != HOLE:  # an error that is passed on was issued elsewhere
                        yield Issued(identifier, ISSUERS[name], text)
            elif any(value not in (set(), {HOLE}) for value in values):
                for callee in self.callees(name, values):
                    yield from callee.issued()


class Source:
    def __init__(self, codes):
        self.files = [nested(tokens_of(code)) for code in codes]
        self.functions = {}
        for nodes in self.files:
            for name, function in functions_in(nodes):
                self.functions.setdefault(name, []).append(function)

    def issued(self):
        return {message for functions in self.functions.values() for function in functions
                for message in Scope(self, function).issued()}

    def column(self, member):
        """The literals that the tables of a structure have in one of its members."""
        texts = set()
        for structure, fields in self.definitions("struct"):
            names = [field[-1] for field in split(fields.nodes, ";")]
            if member in names:
                for _, rows in self.definitions(structure):
                    cells = [split(row.nodes, ",")[names.index(member)]
                             for row in rows.nodes if is_group(row, "{")]
                    texts |= {cell[0].text for cell in cells if isinstance(cell[0], Literal)}
        return texts

    def definitions(self, word):
        """(name, braces) of `word name {` and `word name[] = {`."""
        for run in (run for nodes in self.files for run in runs_in(nodes) if word in run):
            name, *rest = [part for part in run[run.index(word) + 1:]
                           if part != "=" and not is_group(part, "[")] or [""]
            if is_word(name) and rest and is_group(rest[0], "{"):
                yield name, rest[0]


def issued_messages():
    return Source([path.read_text() for path in source_files("module")]).issued()

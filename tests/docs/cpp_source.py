"""A small reader of C++ sources: tokens, nested by their brackets, and the functions they make."""

import ast
import re
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

TOKEN = re.compile(r"""
    (?P<skipped>   \s+ | //[^\n]* | /\*.*?\*/ | ^\#[^\n]* )
  | (?P<raw>       R"(?P<end>\w*)\((?P<content>.*?)\)(?P=end)" )
  | (?P<text>      "(?:[^"\\\n]|\\.)*" )
  | (?P<character> '(?:[^'\\\n]|\\.)+' )
  | (?P<number>    \d[\w.']* )
  | (?P<word>      [A-Za-z_]\w*(?:::~?\w+)*(?:(?<=operator)=)? )
  | (?P<mark>      <<|->|. )
""", re.VERBOSE | re.MULTILINE | re.DOTALL)
TEMPLATE_ARGUMENTS = re.compile(r"(\w)<[\w:, ]+>(?=\()")
CLOSING = {"(": ")", "{": "}", "[": "]"}
NO_FUNCTIONS = {"if", "for", "while", "switch", "catch", "requires"}


@dataclass(frozen=True)
class Literal:
    """The characters of a string or character literal; of neighbouring strings all together."""
    text: str


@dataclass
class Group:
    """What stands between a pair of brackets."""
    opening: str
    nodes: list


@dataclass
class Function:
    """`parameters` are (type, name); `body` are the nodes between the braces."""
    parameters: list
    body: list


def tokens_of(code):
    """Literals, and everything else as strings."""
    tokens = []
    for match in TOKEN.finditer(TEMPLATE_ARGUMENTS.sub(r"\1", code)):
        kind = match.lastgroup
        if kind in ("number", "word", "mark"):
            tokens.append(match.group())
        elif kind != "skipped":
            # The escapes that the sources use mean the same in Python.
            text = match["content"] if kind == "raw" else ast.literal_eval(match.group())
            if kind != "character" and tokens and isinstance(tokens[-1], Literal):
                text = tokens.pop().text + text
            tokens.append(Literal(text))
    return tokens


def nested(tokens):
    """Nodes: literals, words, marks, and groups of nodes."""
    open_groups = [Group("", [])]
    for token in tokens:
        if token in CLOSING:
            group = Group(token, [])
            open_groups[-1].nodes.append(group)
            open_groups.append(group)
        elif token in CLOSING.values():
            assert token == CLOSING[open_groups.pop().opening], "brackets do not match"
        else:
            open_groups[-1].nodes.append(token)
    (whole,) = open_groups
    return whole.nodes


def is_word(node):
    return isinstance(node, str) and (node[:1].isalpha() or node[:1] == "_")


def is_group(node, opening):
    return isinstance(node, Group) and node.opening == opening


def split(nodes, mark):
    """The runs of nodes between the marks."""
    runs = [[]]
    for node in nodes:
        if node == mark:
            runs.append([])
        else:
            runs[-1].append(node)
    return [run for run in runs if run]


def parameter(nodes):
    *type_names, name = [node for node in nodes if isinstance(node, str)] or [""]
    return " ".join(type_names), name


def functions_in(nodes):
    """(name without its class, Function) of each definition, wherever it stands."""
    for i, node in enumerate(nodes):
        if isinstance(node, Group):
            yield from functions_in(node.nodes)
        elif is_word(node) and node not in NO_FUNCTIONS and is_group((nodes + [""])[i + 1], "("):
            body = body_behind(nodes[i + 2:])
            if body:
                parameters = [parameter(run) for run in split(nodes[i + 1].nodes, ",")]
                yield node.split("::")[-1], Function(parameters, body.nodes)


def body_behind(nodes):
    """The braces that follow the parameters of a definition; None after those of a call."""
    # A colon begins the initialisers of a constructor.
    ends = (";", "=") if nodes[:1] == [":"] else (";", "=", ",")
    for node in nodes:
        if node in ends:
            return None
        if is_group(node, "{"):
            return node
    return None


def files(folder, *patterns):
    return [path for pattern in patterns for path in sorted((ROOT / folder).rglob(pattern))]

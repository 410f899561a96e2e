"""Small changes to C++ sources, each of which a test should notice.

Works on tokens, so comments stay as they are, and leans on clang-format: an operator between
blanks has two operands, while the angle brackets, references and pointers of types have none.
"""

import itertools
import re
from collections import defaultdict
from dataclasses import dataclass

TOKEN = re.compile(
    r"""(?P<skip>//[^\n]*|/\*.*?\*/|^[ \t]*\#[^\n]*|\s+)
      |(?P<string>"(?:\\.|[^"\\\n])*")
      |(?P<char>'(?:\\.|[^'\\\n])')
      |(?P<number>0[xX][0-9A-Fa-f']+|\d[\d']*(?:\.\d+)?)
      |(?P<word>[A-Za-z_]\w*(?:::[A-Za-z_]\w*)*)
      |(?P<punct><<=|>>=|->|\+\+|--|&&|\|\||[=!<>+\-*/%&|^]=|::|<<|>>|.)""",
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)

# What the compiler checks or ignores; a change here breaks the build or changes nothing.
OUT_OF_BOUNDS = re.compile(
    r"static_assert\s*\(.*?\);|\[\[.*?\]\]|\busing\s[^;]*;|\btemplate\s*<[^>]*>|"
    r"\brequires\s*\((?:[^()]|\([^()]*\))*\)|__attribute__\(\(.*?\)\)|\bnamespace\s[\w:]+|"
    # Room is taken in advance for speed only.
    r"^\s*[\w.>-]*\breserve\(.*?\);",
    re.MULTILINE | re.DOTALL,
)

# A statement that is not a declaration: a name, then a call, an assignment, a member.
STATEMENT = re.compile(
    r"(?<=[;{}:)\n])(?P<blank>\s*\n[ ]+)(?P<statement>"
    r"return;|break;|continue;|"
    r"(?:throw\b|(?:\+\+|--)?[\w:]+(?:\(|\.|->|\[| [-+*/|&]?= ))(?:[^;{}]|\{[^;{}]*\})*;)"
)

SWAPS = {
    "comparison": {
        "==": ["!="], "!=": ["=="], "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="],
        ">=": [">", "<"],
    },
    "logic": {"&&": ["||"], "||": ["&&"]},
    "arithmetic": {
        "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "/=": ["*="], "+=": ["-="], "&": ["|"],
        "|": ["&"],
    },
}
TRUTH = {"true": "false", "false": "true"}
WIDTHS = {
    "std::uint8_t": "std::int8_t", "std::int8_t": "std::uint8_t",
    "std::uint16_t": "std::uint8_t", "std::int16_t": "std::uint16_t",
    "std::uint32_t": "std::uint16_t", "std::int32_t": "std::int64_t",
    "std::uint64_t": "std::uint32_t", "std::int64_t": "std::int32_t",
}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int

    @property
    def end(self):
        return self.start + len(self.text)


@dataclass(frozen=True)
class Mutant:
    """One change of one file: the characters from `start` to `end` become `new`."""

    file: str
    line: int
    start: int
    end: int
    operator: str
    old: str
    new: str

    @property
    def what(self):
        return f"{self.operator}: {one_line(self.old)} -> {one_line(self.new) or '(nothing)'}"

    def apply(self, text):
        assert text[self.start:self.end] == self.old
        return text[:self.start] + self.new + text[self.end:]


def one_line(text):
    return " ".join(text.split())


def tokens_of(text):
    barred = [match.span() for match in OUT_OF_BOUNDS.finditer(text)]
    for match in TOKEN.finditer(text):
        start = match.start()
        if match.lastgroup != "skip" and not any(a <= start < b for a, b in barred):
            yield Token(match.lastgroup, match[0], start)


def changed_character(literal):
    """The literal with one letter or digit changed, in the middle of it; None without any."""
    plain = [at for at in range(1, len(literal) - 1)
             if literal[at].isalnum() and literal[at - 1] not in "\\%"]
    if not plain:
        return None
    at = plain[len(plain) // 2]
    other = {"z": "y", "Z": "Y", "9": "8"}.get(literal[at]) or chr(ord(literal[at]) + 1)
    return literal[:at] + other + literal[at + 1:]


def number_neighbours(number):
    if "." in number:
        return [str(float(number) + 1.0)]
    value = int(number.replace("'", ""), 0)
    return [str(value + 1)] + ([str(value - 1)] if value > 0 else [])


def token_changes(text, tokens):
    for before, token, after in zip([None, *tokens], tokens, [*tokens[1:], None]):
        spaced = text[token.start - 1:token.start] in " \n" and text[token.end:token.end + 1] in " \n"
        if token.kind == "punct" and spaced:
            for operator, table in SWAPS.items():
                for new in table.get(token.text, ()):
                    yield operator, token.start, token.end, new
        elif token.text == "!":
            yield "negation", token.start, token.end, ""
        elif token.text == "++":
            yield "arithmetic", token.start, token.end, "--"
        elif token.kind == "number":
            for new in number_neighbours(token.text):
                yield "constant", token.start, token.end, new
        elif token.text in TRUTH:
            yield "constant", token.start, token.end, TRUTH[token.text]
        elif token.kind in ("string", "char"):
            if new := changed_character(token.text):
                yield "text", token.start, token.end, new
        elif token.text in WIDTHS and before and after and (before.text, after.text) == ("<", ">"):
            yield "width", token.start, token.end, WIDTHS[token.text]


def name_changes(tokens):
    """A named constant becomes the next one that the file mentions with the same qualifier."""
    families = defaultdict(list)
    for token, after in zip(tokens, tokens[1:]):
        qualifier, _, name = token.text.rpartition("::")
        constant = re.match(r"k[A-Z]", name) or re.fullmatch(r"IfdId|FormatType|DataType", qualifier)
        if token.kind == "word" and constant and after.text not in ("=", "[", "{", "("):
            families[qualifier].append(token)
    for family in families.values():
        names = list(dict.fromkeys(token.text for token in family))
        following = dict(zip(names, names[1:] + names[:1]))
        for token in family:
            if following[token.text] != token.text:
                yield "name", token.start, token.end, following[token.text]


def row_changes(text, tokens):
    """Neighbouring table rows `{code, "word"}` exchange their words."""
    rows = []
    for brace, _, comma, word in zip(tokens, tokens[1:], tokens[2:], tokens[3:]):
        if (brace.text, comma.text, word.kind) == ("{", ",", "string"):
            rows.append(word)
    for first, second in itertools.pairwise(rows):
        between = text[first.end:second.start]
        if first.text != second.text and ";" not in between:
            yield "row", first.start, second.end, second.text + between + first.text


def condition_changes(text, tokens):
    """`if (x)` becomes `if (!(x))`, unless the condition declares something, or is one comparison or
    negation, which have changes of their own."""
    for word, bracket in zip(tokens, tokens[1:]):
        if word.text != "if" or bracket.text != "(":
            continue
        depth, inside = 0, []
        for token in (token for token in tokens if token.start >= bracket.start):
            depth += {"(": 1, ")": -1}.get(token.text, 0)
            inside.append(token.text)
            if depth == 0:
                break
        compared = any(word in SWAPS["comparison"] for word in inside)
        joined = any(word in SWAPS["logic"] for word in inside)
        if "=" not in inside and (joined or not compared and inside[1] != "!"):
            old = text[bracket.start:token.end]
            yield "condition", bracket.start, token.end, f"(!{old})"


def statement_changes(text, tokens):
    starts = {token.start for token in tokens}
    for match in STATEMENT.finditer(text):
        if match.start("statement") in starts:
            yield "statement", match.start("statement"), match.end(), ";"


def mutants_of(file, text):
    """Every change that is made to this file, in the order of its places."""
    tokens = list(tokens_of(text))
    changes = itertools.chain(
        token_changes(text, tokens), name_changes(tokens), row_changes(text, tokens),
        condition_changes(text, tokens), statement_changes(text, tokens))
    return [
        Mutant(file, text.count("\n", 0, start) + 1, start, end, operator, text[start:end], new)
        for operator, start, end, new in sorted(changes, key=lambda change: change[1:])
    ]

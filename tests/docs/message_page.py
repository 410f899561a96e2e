"""The messages as docs/messages.md lists them.

Under a heading of one or more identifiers stand one or more blocks of lines: the texts that are
issued, each with its class, what they mean, and what to do. Words between blocks are for people
alone.
"""

import re
from dataclasses import dataclass

from cpp_source import ROOT
from issued_messages import HOLE, Issued

PAGE = ROOT / "docs" / "messages.md"
HEADING = re.compile(r"### (`[^`]+`(?:, `[^`]+`)*)")
TEXT = re.compile(r"- (fatal|recoverable|warning|direct error): (.+)")
TO_DO = re.compile(r"- To do: .+")
MEANING = re.compile(r"- [A-Z].+")
BLOCK = re.compile("(text )+meaning to-do")
PLACEHOLDER = re.compile("<[a-z]+>")
PLACEHOLDER_ROW = re.compile(r"^\| `(<.*>)` \|", re.MULTILINE)


@dataclass
class Section:
    identifiers: list
    lines: list  # (kind, class, text); class and text are of lines of the kind "text" alone

    def blocks(self):
        """The kinds of the lines, cut before the texts that follow what to do."""
        blocks = []
        for kind, *_ in self.lines:
            if not blocks or (kind == "text" and blocks[-1][-1] != "text"):
                blocks.append([])
            blocks[-1].append(kind)
        return blocks

    def is_complete(self):
        return bool(self.lines) and all(BLOCK.fullmatch(" ".join(b)) for b in self.blocks())

    def messages(self):
        for kind, issued_as, text in self.lines:
            if kind == "text":
                for identifier in self.identifiers:
                    yield Issued(identifier, issued_as, text_of(text))


def text_of(content):
    """The text that a code span shows; placeholders become holes."""
    return PLACEHOLDER.sub(HOLE, content.removeprefix("`").removesuffix("`")).replace("\\n", "\n")


def line_of(line):
    """(kind, class, text) of a line of a list; None of any other."""
    if item := TEXT.fullmatch(line):
        return ("text", *item.groups())
    if TO_DO.fullmatch(line):
        return "to-do", "", ""
    return ("meaning", "", "") if MEANING.fullmatch(line) else None


def sections(page):
    found = []
    for line in page.splitlines():
        if heading := HEADING.fullmatch(line):
            found.append(Section(re.findall("`(.+?)`", heading[1]), []))
        elif found and (item := line_of(line)):
            found[-1].lines.append(item)
    return found


def listed_messages(page):
    return {message for section in sections(page) for message in section.messages()}


def used_placeholders(page):
    return {placeholder for section in sections(page) for _, _, text in section.lines
            for placeholder in PLACEHOLDER.findall(text)}


def explained_placeholders(page):
    return set(PLACEHOLDER_ROW.findall(page))

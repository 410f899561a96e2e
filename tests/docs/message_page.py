"""The messages as docs/messages.md lists them.

Under the heading of an identifier stand one or more blocks of lines: the class, the texts that are
issued so, their meaning, and what to do. Words between blocks are for people alone.
"""

import re
from dataclasses import dataclass

from cpp_source import ROOT
from issued_messages import HOLE, Issued

PAGE = ROOT / "docs" / "messages.md"
HEADING = re.compile(r"### `(.*)`")
LINE = re.compile(r"- (Class|Text|Meaning|What to do): (.+)")
BLOCK = re.compile("Class (Text )+Meaning What to do")
PLACEHOLDER = re.compile("<[a-z]+>")
PLACEHOLDER_ROW = re.compile(r"^\| `(<.*>)` \|", re.MULTILINE)


@dataclass
class Section:
    identifier: str
    lines: list  # (label, content)

    def blocks(self):
        """The lines, cut before each class."""
        blocks = []
        for label, content in self.lines:
            if label == "Class" or not blocks:
                blocks.append([])
            blocks[-1].append((label, content))
        return blocks

    def is_complete(self):
        return bool(self.lines) and all(
            BLOCK.fullmatch(" ".join(label for label, _ in block)) for block in self.blocks())

    def messages(self):
        for block in self.blocks():
            (_, issued_as), *others = block
            for label, content in others:
                if label == "Text":
                    yield Issued(self.identifier, issued_as, text_of(content))


def text_of(content):
    """The text that a code span shows; placeholders become holes."""
    return PLACEHOLDER.sub(HOLE, content.removeprefix("`").removesuffix("`")).replace("\\n", "\n")


def sections(page):
    found = []
    for line in page.splitlines():
        if heading := HEADING.fullmatch(line):
            found.append(Section(heading[1], []))
        elif item := LINE.fullmatch(line):
            found[-1].lines.append(item.groups())
    return found


def listed_messages(page):
    return {message for section in sections(page) for message in section.messages()}


def used_placeholders(page):
    return {placeholder for section in sections(page) for label, content in section.lines
            if label == "Text" for placeholder in PLACEHOLDER.findall(content)}


def explained_placeholders(page):
    return set(PLACEHOLDER_ROW.findall(page))

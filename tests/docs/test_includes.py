"""The folders include each other as docs/architecture.md lists it, and in no other way."""

import re
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PAGE = (ROOT / "docs" / "architecture.md").read_text()
HEADING = "## Which folder may include which"
# Where the compiler looks for a name in quotes.
SEARCHED = [ROOT / folder for folder in ("module", "cli", "host/include", "host/src", "include")]
GENERATED = {"version.h"}


def rows():
    """(folder, folders below, folders above) as the page lists them, from the top down."""
    section = PAGE.split(HEADING)[1].split("\n## ")[0]
    for line in section.splitlines():
        if line.startswith("| `"):
            yield [re.findall(r"`([^`]+)`", cell) for cell in line.strip("|").split("|")]


def open_headers():
    """Headers that the page opens to all folders."""
    [sentence] = re.findall(r"^Open to all: (.*?\.)$", PAGE, re.MULTILINE | re.DOTALL)
    return {ROOT / name for name in re.findall(r"`([^`]+)`", sentence)}


def folder_of(path):
    """`module/tag` of a file in it; host/, include/ and tools/ are one folder each."""
    parts = path.relative_to(ROOT).parts
    return "/".join(parts[:2]) if parts[0] in ("module", "cli") and len(parts) > 2 else parts[0]


def included_by(source):
    for name in re.findall(r'^#include "([^"]+)"', source.read_text(), re.MULTILINE):
        found = [folder / name for folder in SEARCHED if (folder / name).exists()]
        assert found or name in GENERATED, f"{source} includes {name}, which is not found"
        yield from found[:1]


def arrows():
    for (folder,), below, above in rows():
        yield from ((folder, other) for other in below + above)


def test_folders_include_what_is_listed_and_nothing_else():
    sources = [path for folder in ("module", "host", "cli", "tools", "include")
               for path in (ROOT / folder).rglob("*") if path.suffix in (".h", ".cpp", ".in")]
    found = {(folder_of(source), folder_of(header)): (source, header)
             for source in sources for header in included_by(source)
             if header not in open_headers() and folder_of(source) != folder_of(header)}
    unlisted = {arrow: found[arrow] for arrow in found.keys() - set(arrows())}
    assert not unlisted, "includes that docs/architecture.md does not list"
    assert not set(arrows()) - found.keys(), "listed in docs/architecture.md, but no file does so"


def test_two_arrows_of_the_module_go_up():
    order = [folder for (folder,), _, _ in rows()]
    assert len(order) == len(set(order))
    for (folder,), below, above in rows():
        assert all(order.index(other) > order.index(folder) for other in below), folder
        assert all(order.index(other) < order.index(folder) for other in above), folder
    assert {(folder, other) for (folder,), _, above in rows() for other in above
            if folder.startswith("module/")} == {("module/tag", "module/ifd"),
                                                 ("module/tagfile", "module/ifd")}


def test_open_headers_include_no_folder_but_the_contract():
    for header in open_headers():
        assert {folder_of(other) for other in included_by(header)} <= {"include"}, header

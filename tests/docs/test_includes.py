"""The folders of the module include each other as the table of docs/architecture.md lists."""

import re

import pytest
from cpp_source import ROOT

PAGE = (ROOT / "docs" / "architecture.md").read_text()
INCLUDE = re.compile(r'^#include "((\w+)/[\w/]+\.h)"', re.MULTILINE)
ROW = re.compile(r"^\| `(\w+)/` \| .* \| ([^|]*`\w+/`[^|]*) \|$", re.MULTILINE)
OPEN = set(re.findall(r"`(\w+/\w+\.h)`", re.search(r"^Open to all(.+\n)+", PAGE, re.MULTILINE)[0]))


def folders_in(cell):
    return set(re.findall(r"`(\w+)/`", cell))


LISTED = {folder: folders_in(cell) for folder, cell in ROW.findall(PAGE)}
UPWARDS = {folder: folders_in(cell.partition("up:")[2]) for folder, cell in ROW.findall(PAGE)}


def included(folder, pattern):
    """The other folders whose headers the files of a folder include, but for those open to all."""
    return {other for path in (ROOT / "module" / folder).glob(pattern)
            for header, other in INCLUDE.findall(path.read_text())
            if header not in OPEN and other in LISTED and other != folder}


def test_every_folder_has_a_row_in_the_order_of_includes():
    assert set(LISTED) == {path.name for path in (ROOT / "module").iterdir() if path.is_dir()}
    order = list(LISTED)
    upwards = {(folder, other) for folder in order for other in LISTED[folder]
               if order.index(other) < order.index(folder)}
    assert upwards == {(folder, other) for folder in order for other in UPWARDS[folder]}
    assert upwards == {("tag", "ifd"), ("tagfile", "ifd")}


@pytest.mark.parametrize("folder", LISTED)
def test_a_folder_includes_what_is_listed(folder):
    assert included(folder, "*.*") == LISTED[folder]


@pytest.mark.parametrize("folder", LISTED)
def test_headers_include_downwards(folder):
    assert included(folder, "*.h") & UPWARDS[folder] == set()


def test_headers_open_to_all_include_no_folder_of_the_module():
    assert OPEN
    for header in OPEN:
        found = INCLUDE.findall((ROOT / "module" / header).read_text())
        assert [name for name, folder in found if folder in LISTED and name not in OPEN] == []

"""Every row of the page on reliability names tests that exist."""

import re
from functools import cache
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
PAGE = (ROOT / "docs" / "reliability.md").read_text()
HEAD = ["class", "how it is built", "what is shown", "test", "cases"]


def rows():
    for line in PAGE.splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if line.startswith("|") and cells != HEAD and not set(line) <= set("|- :"):
            yield cells


@cache
def names_in_cpp():
    """"Suite.Name" of all tests of C++, whatever they are instantiated with."""
    found = set()
    for source in ROOT.glob("tests/**/*_test.cpp"):
        found.update(f"{suite}.{name}" for suite, name in
                     re.findall(r"^T\w+\(\s*(\w+),\s*(\w+)\)", source.read_text(), re.MULTILINE))
    return found


@cache
def names_in_python():
    return {name for source in ROOT.glob("tests/**/test_*.py")
            for name in re.findall(r"^def (test_\w+)", source.read_text(), re.MULTILINE)}


def names_in(cell):
    return re.findall(r"`([^`]+)`", cell)


def exists(name):
    if name.endswith(".py"):
        return (ROOT / name).is_file()
    if name.startswith("test_"):
        return name in names_in_python()
    pattern = re.compile(re.escape(name).replace(r"\*", ".*"))
    return any(pattern.fullmatch(test) for test in names_in_cpp())


def test_there_are_thirty_classes_with_all_cells():
    classes = [cells[0] for cells in rows()]
    assert len(classes) == len(set(classes)) >= 30
    for cells in rows():
        assert len(cells) == len(HEAD) and all(cells), cells
        assert re.search(r"\d|above|grid|loops", cells[-1]), cells


@pytest.mark.parametrize("cells", rows(), ids=lambda cells: cells[0])
def test_the_tests_of_a_class_exist(cells):
    programs = re.findall(r"(?:^|; |, )([a-z]+(?:\.[a-z_]+)?)(?=:|;|,|$)", cells[3])
    assert programs, "no test of ctest is named"
    assert [name for name in names_in(cells[3]) if not exists(name)] == []

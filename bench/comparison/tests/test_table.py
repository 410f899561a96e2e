"""The table and the record of made-up rows."""

import json

import pytest

from comparison import table
from comparison.figures import Row, Target

ROWS = [
    Row("in process", "pages classic", "veltrace", "us/file", [20.0], directories=3, entries=36),
    Row("in process", "pages classic", "libtiff", "us/file", [50.0], ours=[20.0], directories=3,
        entries=39, target=Target(0.5)),
    Row("batch", "one worker", "exiv2", "files/s", [4000.0], ours=[16_000.0], refused=2,
        target=Target(5, at_least=True)),
]


def lines():
    return [line.split() for line in table.text_of(ROWS).splitlines()]


def test_table_has_a_line_for_each_row_below_its_section():
    assert lines()[2:] == [
        ["IN", "PROCESS"],
        ["pages", "classic", "veltrace", "20.0", "20.0", "to", "20.0", "us/file", "3", "36"],
        ["libtiff", "50.0", "50.0", "to", "50.0", "us/file", "3", "39",
         "0.400", "0.400", "to", "0.400", "<=", "0.5", "met"],
        ["BATCH"],
        ["one", "worker", "exiv2", "4000", "4000", "to", "4000", "files/s", "2",
         "4.00", "4.00", "to", "4.00", ">=", "5", "missed"],
    ]


def test_columns_stand_below_their_headings():
    text = table.text_of(ROWS).splitlines()
    assert text[0].index("reader") == text[3].index("veltrace") == text[4].index("libtiff")


@pytest.mark.parametrize("value, text", [
    (0.012345, "0.0123"), (1.5, "1.50"), (42.21, "42.2"), (100, "100"), (28000.4, "28000")])
def test_numbers_have_three_digits_or_are_whole(value, text):
    assert table.number(value) == text


def test_record_keeps_every_round_and_what_was_made_of_it():
    written = json.loads(table.json_of({"kernel": "6"}, ROWS))
    assert written["machine"] == {"kernel": "6"}
    libtiff = written["rows"][1]
    assert libtiff["rounds"] == [50.0]
    assert libtiff["ratio"]["median"] == 0.4
    assert libtiff["met"] is True
    assert written["rows"][0]["met"] is None

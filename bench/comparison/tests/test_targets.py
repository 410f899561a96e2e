"""Which target belongs to which row."""

import pytest

from comparison.figures import Row
from comparison.targets import TARGETS, assign, target_of


@pytest.mark.parametrize("section, measurement, reader, text", [
    ("in process", "examples jpeg", "libexif", "<= 0.6"),
    ("in process", "examples jpeg", "exiv2", "<= 0.2"),
    ("in process", "pages classic", "libtiff", "<= 0.5"),
    ("in process", "pages classic", "libtiff-unmapped", "<= 0.5"),
    ("in process", "pages classic", "minimal", "<= 1.5"),
    ("in process", "big-pages bigtiff", "libtiff", "<= 0.9"),
    ("whole process", "camera.tif", "tiffdump", "<= 1.5"),
    ("batch", "one worker", "exiv2", ">= 5"),
    ("batch", "two workers", "veltrace -j 1", ">= 1.7"),
    ("growth", "chain-60000 time", "veltrace", "<= 2.5"),
    ("growth", "chain-60000 memory", "veltrace", "<= 3072"),
    ("growth", "chain time, 10000 to 60000", "veltrace", "<= 1.25"),
    ("growth", "values-short-ii-1000000 time", "libtiff", "<= 1"),
    ("growth", "values-double-mm-1000000 memory", "veltrace", "<= 28"),
])
def test_target_is_found(section, measurement, reader, text):
    assert str(target_of(section, measurement, reader)) == text


@pytest.mark.parametrize("section, measurement, reader", [
    ("in process", "pages classic", "exiv2"),  # only of JPEG
    ("in process", "pages classic", "bare"),
    ("growth", "chain-10000 time", "veltrace"),
    ("growth", "values-short-ii-1000 time", "libtiff"),
    ("growth", "chain-60000 time", "minimal"),
])
def test_other_rows_have_none(section, measurement, reader):
    assert target_of(section, measurement, reader) is None


def test_wide_directory_may_take_twenty_milliseconds():
    target = target_of("growth", "wide-65535 time", "veltrace")
    assert target.is_met(19_990 / 65_535)
    assert not target.is_met(20_010 / 65_535)


def test_no_target_hides_behind_another():
    for section, measurement, reader, target in TARGETS:
        name = (section, measurement.replace("*", "x"), reader.replace("*", ""))
        assert target_of(*name) is target


def test_rows_are_given_their_targets():
    rows = [Row("batch", "one worker", "exiv2", "files/s", [1]),
            Row("batch", "one worker", "tiffdump", "files/s", [1])]
    assign(rows)
    assert [row.target is None for row in rows] == [False, True]

"""Runs in unusual environments: no standard streams, another locale or time zone, little stack."""

import itertools
import os
import pathlib
import re
import resource
import subprocess

import pytest
from processes import check_no_process_is_left
from record_checks import check_record
from tiff_bytes import EXIF, MAKE, broken, directory, image, nested, pointer

EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "examples"
CAMERA = str(EXAMPLES / "camera.tif")
FORMATS = ["text", "json", "ndjson", "csv"]
CLOSED = [closed for count in (1, 2, 3) for closed in itertools.combinations((0, 1, 2), count)]


def without_times(output):
    return re.sub(rb'"elapsed_us":[0-9]+', b'"elapsed_us":0', output)


def closing(descriptors):
    def close():
        for descriptor in descriptors:
            os.close(descriptor)
    return close


@pytest.fixture
def images(write, tmp_path):
    """A good file, one with a warning, and one that fails. They must not change."""
    contents = {"a.tif": image(texts=[(MAKE, b"Kiln & Co\0")]), "b.tif": image(broken(MAKE)),
                "no.txt": b"just some text"}
    for name, content in contents.items():
        write(name, content)
    yield list(contents)
    for name, content in contents.items():
        assert (tmp_path / name).read_bytes() == content


@pytest.mark.parametrize("isolation", ["on", "off"])
@pytest.mark.parametrize("closed", CLOSED)
def test_closed_streams_affect_only_what_goes_through_them(veltrace, images, tmp_path, closed,
                                                           isolation):
    for form in FORMATS:
        arguments = ["--format", form, "--ordered", "--isolation", isolation, *images]
        usual = veltrace(*arguments)
        assert usual.returncode == 1
        run = veltrace(*arguments, preexec_fn=closing(closed))
        if 1 in closed:
            assert (run.returncode, run.stdout) == (3, b"")
            message = b"veltrace: cannot write the output: Bad file descriptor\n"
        else:
            assert run.returncode == 1
            assert without_times(run.stdout) == without_times(usual.stdout)
            message = usual.stderr
        assert run.stderr == (b"" if 2 in closed else message)
        assert sorted(os.listdir(tmp_path)) == images
        check_no_process_is_left()


@pytest.mark.parametrize("closed", CLOSED)
def test_an_output_file_needs_no_stream(veltrace, images, tmp_path, closed):
    for form in FORMATS:
        arguments = ["--format", form, "--ordered", *images]
        usual = veltrace(*arguments).stdout
        run = veltrace(*arguments, "-o", "out", preexec_fn=closing(closed))
        assert run.returncode == 1
        assert without_times((tmp_path / "out").read_bytes()) == without_times(usual)


def test_a_list_from_a_closed_standard_input_is_empty(veltrace):
    run = veltrace("--files-from", "-", preexec_fn=closing([0]))
    assert (run.returncode, run.stdout) == (2, b"")
    assert run.stderr == b"veltrace: no files to read were found\n"


@pytest.fixture(scope="module")
def german(tmp_path_factory):
    """An environment with decimal commas and grouped digits."""
    locales = tmp_path_factory.mktemp("locales")
    subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", locales / "de_DE.UTF-8"], check=True)
    environment = os.environ | {"LOCPATH": str(locales), "LC_ALL": "de_DE.UTF-8"}
    shown = subprocess.run(["locale", "decimal_point"], env=environment, check=True,
                           stdout=subprocess.PIPE).stdout
    assert shown == b",\n"
    return environment


@pytest.mark.parametrize("form", FORMATS)
def test_no_text_depends_on_the_locale(veltrace, images, german, form):
    arguments = ["--format", form, "--ordered", "-f", "FileSize", "-f",
                 "DigitalCamera.ExposureTime", CAMERA, *images, "gone.tif"]
    plain = veltrace(*arguments, env=os.environ | {"LC_ALL": "C"})
    local = veltrace(*arguments, env=german)
    assert (local.returncode, plain.returncode) == (1, 1)
    assert without_times(local.stdout) == without_times(plain.stdout)
    assert local.stderr == plain.stderr
    assert b"0.008" in local.stdout
    assert b"3012" in local.stdout


def test_numbers_of_options_do_not_depend_on_the_locale(veltrace, images, german):
    assert veltrace("--time-limit", "2.5", images[0], env=german).returncode == 0
    assert veltrace("--time-limit", "2,5", images[0], env=german).returncode == 2


@pytest.mark.parametrize("zone, date", [
    ("UTC0", "09-Sep-2001 01:46:40"),
    ("", "09-Sep-2001 01:46:40"),
    (":", "09-Sep-2001 01:46:40"),
    ("kiln!", "09-Sep-2001 01:46:40"),
    ("/etc/passwd", "09-Sep-2001 01:46:40"),
    ("<+1234>-12:34", "09-Sep-2001 14:20:40"),
    ("CET-1CEST,M3.5.0,M10.5.0/3", "09-Sep-2001 03:46:40"),
    ("Asia/Kathmandu", "09-Sep-2001 07:31:40"),
    (f"<{'A' * 100_000}>-3", "09-Sep-2001 04:46:40")])
@pytest.mark.parametrize("isolation", ["on", "off"])
def test_the_date_is_in_the_time_zone(veltrace, write, tmp_path, zone, date, isolation):
    os.utime(tmp_path / write("a.tif", image()), (0, 1_000_000_000))
    run = veltrace("--ndjson", "--isolation", isolation, "-f", "FileModDate", "a.tif",
                   env=os.environ | {"TZ": zone})
    assert check_record(run.stdout)["info"] == [{"FileModDate": date}]


def test_a_date_before_1970_is_a_date(veltrace, write, tmp_path):
    os.utime(tmp_path / write("a.tif", image()), (0, -1))
    run = veltrace("--ndjson", "-f", "FileModDate", "a.tif", env=os.environ | {"TZ": "UTC0"})
    assert check_record(run.stdout)["info"] == [{"FileModDate": "31-Dec-1969 23:59:59"}]


def endless():
    """A directory that is its own Exif directory."""
    return b"II*\0\x08\0\0\0" + directory(pointer(EXIF, 8))


UNLIMITED = resource.RLIM_INFINITY
MEMORY = 128 << 20
DEPTHS = [10, 1000, 100_000]


@pytest.mark.parametrize("isolation", ["on", "off"])
@pytest.mark.parametrize("stack", [256 << 10, 8 << 20, UNLIMITED])
def test_a_file_needs_no_particular_stack(veltrace, write, stack, isolation, limits_memory):
    if stack == UNLIMITED and not limits_memory:
        pytest.skip("nothing would end before all memory does")
    if stack == UNLIMITED and resource.getrlimit(resource.RLIMIT_STACK)[1] != UNLIMITED:
        pytest.skip("this user must have a limit")

    def limit():
        resource.setrlimit(resource.RLIMIT_STACK, (stack, resource.RLIM_INFINITY))
        if stack == UNLIMITED and isolation == "off":
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))

    def outcome_of(name, form):
        run = veltrace("--format", form, "--isolation", isolation, "--time-limit", "60",
                       "--memory-limit", str(MEMORY), name, preexec_fn=limit)
        failed = b"ZEPHRA:veltrace:unknownException" in run.stdout + run.stderr
        assert run.returncode == (1 if failed else 0)
        assert b"crashed" not in run.stdout
        return "failed" if failed else run.stdout

    write("flat.tif", image(texts=[(MAKE, b"Kiln & Co\0")]))
    write("endless.tif", endless())
    for depth in DEPTHS:
        write(f"{depth}.tif", nested(depth))
    for form in ["text", "ndjson"]:
        assert b"Kiln & Co" in outcome_of("flat.tif", form)
        assert outcome_of("endless.tif", form) == "failed"
        assert b"Flash" in outcome_of("10.tif", form)
    for depth in DEPTHS:
        outcome = outcome_of(f"{depth}.tif", "ndjson")
        assert outcome == "failed" or outcome.count(b"DigitalCamera") == depth

"""Exit statuses, messages and delivery of the output."""

import os
import pathlib
import re
import subprocess

import pytest
from conftest import VELTRACE
from record_checks import SCHEMA, check_record
from tiff_bytes import MAKE, broken, image

EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "examples"
NOT_A_TIFF = b"just some text"


def test_reading_every_file_succeeds_silently(veltrace, write):
    run = veltrace(write("a.tif", image()), write("b.tif", image()))
    assert run.returncode == 0
    assert run.stderr == b""


def test_warnings_go_to_standard_error_and_do_not_fail_the_run(veltrace, write):
    run = veltrace(write("a.tif", image(broken(MAKE))))
    assert run.returncode == 0
    assert run.stderr == (
        b"veltrace: a.tif: warning: Tag ID 271 with datatype format value 99 is invalid.  "
        b"Only values 0-13 are allowed. [ZEPHRA:veltrace:badTagFormat]\n")
    assert b"Width" in run.stdout


def test_a_file_that_fails_changes_the_status_but_no_other_file(veltrace, write):
    run = veltrace(write("a.tif", image()), write("no.txt", NOT_A_TIFF), "gone.tif",
                   write("b.tif", image()))
    assert run.returncode == 1
    assert run.stderr == (
        b"veltrace: no.txt: error: File format not recognized "
        b"[ZEPHRA:veltrace:unhandledFileFormat]\n"
        b'veltrace: gone.tif: error: Could not open file "gone.tif". '
        b"[ZEPHRA:veltrace:badFilename]\n")
    assert re.findall(rb"^\S.*", run.stdout, re.MULTILINE) == [b"a.tif", b"b.tif"]


@pytest.mark.parametrize("arguments", [[], ["--json"], ["--no-such-option", "a.tif"], ["--module"]])
def test_wrong_usage_prints_nothing_but_a_message(veltrace, arguments):
    run = veltrace(*arguments)
    assert run.returncode == 2
    assert run.stdout == b""
    assert run.stderr.startswith(b"veltrace: ")


@pytest.mark.parametrize("module", ["missing.so", "text.so", "."])
def test_a_module_that_cannot_be_loaded_is_wrong_usage(veltrace, write, module):
    write("text.so", b"not a library")
    run = veltrace("--module", module, write("a.tif", image()))
    assert run.returncode == 2
    assert run.stdout == b""
    assert re.fullmatch(rb"veltrace: .*\n", run.stderr)
    assert module.encode() in run.stderr


def test_another_module_is_loaded_from_its_path(veltrace, write):
    module = os.path.join(os.path.dirname(VELTRACE), "veltrace.so")
    run = veltrace("--module", module, write("a.tif", image()))
    assert (run.returncode, run.stderr) == (0, b"")


def test_the_module_is_found_next_to_the_command_whatever_name_it_is_called_by(
        veltrace, write, tmp_path):
    os.symlink(VELTRACE, tmp_path / "elsewhere")
    name = write("a.tif", image())
    run = subprocess.run(["./elsewhere", name], cwd=tmp_path, capture_output=True, check=False)
    assert run.returncode == 0
    assert run.stdout == veltrace(name).stdout


def test_help_describes_the_options(veltrace):
    run = veltrace("--help")
    assert (run.returncode, run.stderr) == (0, b"")
    assert b"Usage: veltrace [OPTIONS] [FILE...]" in run.stdout
    for option in (b"--json", b"--module", b"--version"):
        assert option in run.stdout
    assert max(map(len, run.stdout.splitlines())) <= 100


def test_version_prints_the_version_and_the_sandbox(veltrace):
    run = veltrace("--version")
    assert (run.returncode, run.stderr) == (0, b"")
    version, sandbox = run.stdout.decode().splitlines()
    assert version == f"veltrace {os.environ['VELTRACE_VERSION']}"
    assert re.fullmatch("sandbox: (none|(memory limit|no new privileges|Landlock ABI [0-9]+"
                        "|seccomp)(, .+)?)", sandbox)


@pytest.mark.parametrize("arguments", [
    ["a.tif"], ["a.tif", "gone.tif"], ["--json", "a.tif"], ["--help"], ["--version"]])
def test_a_full_disk_is_reported_and_ends_the_run(veltrace, write, arguments):
    write("a.tif", image())
    with open("/dev/full", "wb") as full:
        run = veltrace(*arguments, stdout=full)
    assert run.returncode == 3
    assert run.stderr == b"veltrace: cannot write the output: No space left on device\n"


@pytest.mark.parametrize("option", ["-o", "--output", "--summary"])
@pytest.mark.parametrize("target, reason", [
    ("gone/out", "No such file or directory"), (".", "Is a directory")])
def test_an_output_that_cannot_be_created_is_reported_before_any_work(veltrace, write, option, target,
                                                               reason):
    run = veltrace(option, target, write("a.tif", image()), "gone.tif")
    assert (run.returncode, run.stdout) == (3, b"")
    assert run.stderr == f"veltrace: cannot write {target}: {reason}\n".encode()


def test_an_output_file_is_whole_and_alone(veltrace, write, tmp_path):
    expected = veltrace("--format", "csv", write("a.tif", image())).stdout
    run = veltrace("--format", "csv", "-o", "out", "a.tif")
    assert (run.returncode, run.stdout, run.stderr) == (0, b"", b"")
    assert (tmp_path / "out").read_bytes() == expected
    assert sorted(os.listdir(tmp_path)) == ["a.tif", "out"]


def test_an_existing_output_file_keeps_its_mode_and_its_links(veltrace, write, tmp_path):
    write("out", b"old")
    (tmp_path / "out").chmod(0o640)
    (tmp_path / "link").symlink_to("out")
    assert veltrace("-o", "link", write("a.tif", image())).returncode == 0
    assert (tmp_path / "link").is_symlink()
    assert (tmp_path / "out").stat().st_mode & 0o777 == 0o640
    assert (tmp_path / "out").read_bytes().startswith(b"a.tif\n")


def test_a_run_that_fails_leaves_an_output_file_as_it_was(veltrace, write, tmp_path):
    write("out", b"old")
    run = veltrace("-o", "out", "--module", "gone.so", write("a.tif", image()))
    assert run.returncode == 2
    assert (tmp_path / "out").read_bytes() == b"old"
    assert sorted(os.listdir(tmp_path)) == ["a.tif", "out"]


@pytest.mark.parametrize("fail_on, statuses", [
    ("error", [0, 0, 1, 1]), ("warning", [0, 1, 1, 1]), ("never", [0, 0, 0, 0])])
def test_fail_on_sets_what_fails_the_run(veltrace, write, fail_on, statuses):
    names = [write("ok.tif", image()), write("warned.tif", image(broken(MAKE))),
             write("error.txt", NOT_A_TIFF), "gone.tif"]
    assert [veltrace("--fail-on", fail_on, name).returncode for name in names] == statuses
    assert veltrace("--fail-on", fail_on, *names).returncode == statuses[-1]


def test_the_schema_is_the_one_of_the_tests(veltrace):
    run = veltrace("--schema")
    assert (run.returncode, run.stderr) == (0, b"")
    assert run.stdout == SCHEMA.read_bytes()


def test_every_example_has_a_record_that_fits_the_schema_and_that_jq_reads(veltrace):
    run = veltrace("--ndjson", "-r", EXAMPLES)
    assert (run.returncode, run.stderr) == (0, b"")
    records = [check_record(line) for line in run.stdout.splitlines(keepends=True)]
    assert {os.path.basename(record["path"]) for record in records} == {
        os.fsencode(path.name) for path in [*EXAMPLES.glob("*.tif"), *EXAMPLES.glob("*.jpg")]}
    read = subprocess.run(["jq", "-c", "[.status, (.info | length)]"], input=run.stdout,
                          capture_output=True, check=True)
    lines = read.stdout.splitlines()
    assert len(lines) == len(run.stdout.splitlines())
    assert sorted(lines) == sorted([b'["ok",1]'] * 7 + [b'["ok",3]', b'["warned",1]'])


@pytest.mark.parametrize("arguments", [[], ["--json"], ["--ndjson"], ["--format", "csv"]])
def test_a_file_is_delivered_before_the_next_one_is_known(write, tmp_path, arguments):
    write("a.tif", image())
    with subprocess.Popen([VELTRACE, *arguments, "--files-from", "-"], cwd=tmp_path,
                          stdin=subprocess.PIPE, stdout=subprocess.PIPE) as run:
        try:
            run.stdin.write(b"a.tif\n")
            run.stdin.flush()
            seen = b""
            while b"a.tif" not in seen:
                piece = os.read(run.stdout.fileno(), 65536)
                assert piece
                seen += piece
            assert run.poll() is None
        finally:
            run.kill()

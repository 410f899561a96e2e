"""The files that the command reads, and the order of their records."""

import os
import pathlib
import shutil
import socket
import subprocess
import tempfile

import pytest
from conftest import VELTRACE
from record_checks import check_record
from tiff_bytes import image

NAMES = [f"{number:02}.tif" for number in range(40)]


def records(output):
    return [check_record(line) for line in output.splitlines(keepends=True)]


def paths(output):
    return [os.fsdecode(record["path"]) for record in records(output)]


@pytest.fixture
def tree(tmp_path, write):
    for name in ["b", "b/deep", "b/deep/er", "B"]:
        (tmp_path / name).mkdir()
    for name in ["a.tif", "b/z.tif", "b/deep/y.tif", "b/deep/er/x.jpg", "B/w.tif", "c.tif"]:
        write(name, image())
    write("b/notes.txt", b"no image")
    write("b/empty.tif", b"")
    (tmp_path / "b" / "link.tif").symlink_to("z.tif")
    (tmp_path / "b" / "up").symlink_to("..")
    os.mkfifo(tmp_path / "b" / "fifo.tif")
    return tmp_path


def test_directories_are_walked_in_the_order_of_names(veltrace, tree):
    run = veltrace("-r", "--ndjson", "--ordered", ".")
    assert (run.returncode, run.stderr) == (0, b"")
    assert paths(run.stdout) == ["./B/w.tif", "./a.tif", "./b/deep/er/x.jpg", "./b/deep/y.tif",
                                 "./b/z.tif", "./c.tif"]
    assert [record["seq"] for record in records(run.stdout)] == list(range(6))


def test_roots_are_walked_in_their_order_and_may_be_files_of_any_kind(veltrace, tree):
    run = veltrace("--recursive", "--ndjson", "--ordered", "b/notes.txt", "c.tif", "B/", "b/link.tif")
    assert run.returncode == 1
    assert [(record["path"], record["status"]) for record in records(run.stdout)] == [
        (b"b/notes.txt", "error"), (b"c.tif", "ok"), (b"B/w.tif", "ok"), (b"b/link.tif", "ok")]


def test_without_recursion_a_directory_is_unreadable(veltrace, tree):
    run = veltrace("--ndjson", "--ordered", "b", "a.tif")
    assert run.returncode == 1
    first, second = records(run.stdout)
    assert (first["status"], first["error"]) == ("unreadable", {
        "id": "veltrace:notRegularFile", "text": "It is a directory, not a regular file."})
    assert second["status"] == "ok"


@pytest.fixture
def open_directory():
    """A directory that every user may search."""
    with tempfile.TemporaryDirectory() as path:
        os.chmod(path, 0o755)
        yield pathlib.Path(path)


@pytest.fixture
def veltrace_of_a_user():
    """Runs the command as a user who may not read everything. The build may be in a place that this
    user cannot reach, so the command is copied."""
    with tempfile.TemporaryDirectory() as path:
        os.chmod(path, 0o755)
        for file in [VELTRACE, pathlib.Path(VELTRACE).with_name("veltrace.so")]:
            shutil.copy(file, path)
        user = {"user": 65534} if os.geteuid() == 0 else {}

        def run(*arguments, **settings):
            return subprocess.run([f"{path}/veltrace", *arguments], capture_output=True, timeout=60,
                                  check=False, **user, **settings)

        yield run


def test_what_cannot_be_read_is_reported_and_fails_the_run(veltrace_of_a_user, open_directory):
    closed = open_directory / "closed"
    for path in [closed, open_directory / "open"]:
        path.mkdir()
        (path / "a.tif").write_bytes(image())
    (open_directory / "secret.tif").write_bytes(image())
    (open_directory / "secret.tif").chmod(0)
    closed.chmod(0)
    run = veltrace_of_a_user("-r", "--ndjson", "--ordered", ".", cwd=open_directory)
    again = veltrace_of_a_user("-r", "--ndjson", "--fail-on", "never", ".", cwd=open_directory)
    closed.chmod(0o755)
    assert (run.returncode, again.returncode) == (1, 0)
    assert run.stderr == b"veltrace: cannot walk ./closed: Permission denied\n"
    assert [(record["path"], record["status"]) for record in records(run.stdout)] == [
        (b"./open/a.tif", "ok"), (b"./secret.tif", "unreadable")]


@pytest.mark.parametrize("option, end", [("--files-from", b"\n"), ("--files0-from", b"\0")])
def test_lists_name_files(veltrace, write, option, end):
    names = [b"a.tif", b"sp ace.tif", b"\xff.tif"] + ([b"new\nline.tif"] if end == b"\0" else [])
    for name in names:
        write(name, image())
    content = end.join(names)
    run = veltrace("--ndjson", "--ordered", option, write("list", content))
    assert (run.returncode, run.stderr) == (0, b"")
    assert [record["path"] for record in records(run.stdout)] == names
    again = veltrace("--ndjson", "--ordered", option, "-", input=content + end)
    assert [record["path"] for record in records(again.stdout)] == names


@pytest.mark.parametrize("isolation", ["on", "off"])
def test_a_line_with_a_nul_is_unreadable(veltrace, isolation):
    run = veltrace("--isolation", isolation, "--ndjson", "--files-from", "-", input=b"a\0b\n")
    (record,) = records(run.stdout)
    assert run.returncode == 1
    assert (record["path"], record["status"]) == (b"a\0b", "unreadable")
    assert record["error"] == {"id": "veltrace:badName",
                               "text": "A file name has no NUL character."}


def test_arguments_come_before_lists(veltrace, write):
    for name in NAMES[:4]:
        write(name, image())
    run = veltrace("--ndjson", "--ordered", "--files0-from", write("z", b"02.tif\0"),
                   "--files-from", write("l", b"01.tif\n\n"), "--files-from", "-", "00.tif",
                   input=b"03.tif")
    assert paths(run.stdout) == ["00.tif", "01.tif", "03.tif", "02.tif"]


@pytest.mark.parametrize("arguments", [
    ["--files-from", "/dev/null"], ["--files0-from", "/dev/null"], ["-r", "empty"]])
def test_no_files_at_all_are_wrong_usage(veltrace, tmp_path, arguments):
    (tmp_path / "empty").mkdir()
    run = veltrace(*arguments, "-o", "out", "--json")
    assert (run.returncode, run.stdout, run.stderr) == (
        2, b"", b"veltrace: no files to read were found\n")
    assert not (tmp_path / "out").exists()


@pytest.mark.parametrize("arguments, reason", [
    (["--files-from", "gone"], b"cannot read names from gone: No such file or directory"),
    (["--files0-from", "."], b"cannot read names from .: Is a directory"),
    (["--resume-from", "gone"], b"cannot read the records of gone: No such file or directory"),
    (["--resume-from", "text"], b"cannot read the records of text: line 1 is not a record")])
def test_a_list_that_cannot_be_read_is_wrong_usage(veltrace, write, arguments, reason):
    write("text", b"a.tif\n")
    run = veltrace(*arguments, write("a.tif", image()))
    assert (run.returncode, run.stdout, run.stderr) == (2, b"", b"veltrace: " + reason + b"\n")


def test_shards_have_every_name_once_and_in_its_place(veltrace, write):
    for name in NAMES:
        write(name, image())
    shards = [veltrace("--ndjson", "--shard", f"{index}/3", *NAMES) for index in (1, 2, 3)]
    assert [run.returncode for run in shards] == [0, 0, 0]
    found = [(record["seq"], os.fsdecode(record["path"]))
             for run in shards for record in records(run.stdout)]
    assert sorted(found) == list(enumerate(NAMES))


def test_a_shard_depends_on_the_name_alone(veltrace):
    # The last byte of the hash of the empty name is C2, 194.
    assert paths(veltrace("--ndjson", "--shard", "195/256", "").stdout) == [""]
    run = veltrace("--ndjson", "--shard", "194/256", "")
    assert (run.returncode, run.stdout) == (0, b"")


def test_a_run_resumes_another(veltrace, write):
    for name in NAMES:
        write(name, image())
    whole = veltrace("--ndjson", "--ordered", *NAMES).stdout.splitlines(keepends=True)
    write("torn.ndjson", b"".join(whole[:7]) + whole[7][:-1])
    run = veltrace("--ndjson", "--ordered", "--resume-from", "torn.ndjson", *NAMES)
    assert run.returncode == 0
    assert paths(run.stdout) == NAMES[7:]
    assert [record["seq"] for record in records(run.stdout)] == list(range(7, 40))


def test_a_failed_file_counts_as_done(veltrace, write):
    first = veltrace("--ndjson", "gone.tif", b"\xff.tif")
    run = veltrace("--ndjson", "--resume-from", write("out", first.stdout), "gone.tif", b"\xff.tif",
                   write("a.tif", image()))
    assert paths(run.stdout) == ["a.tif"]


def test_nothing_left_to_do_is_not_a_failure(veltrace, write):
    first = veltrace("--ndjson", write("a.tif", image()))
    run = veltrace("--ndjson", "--resume-from", write("out", first.stdout), "a.tif")
    assert (run.returncode, run.stdout, run.stderr) == (0, b"", b"")


def test_an_output_that_is_resumed_from_is_rejected(veltrace, write, tmp_path):
    first = veltrace("--ndjson", write("a.tif", image()))
    write("out", first.stdout)
    run = veltrace("--ndjson", "--resume-from", "out", "-o", "./out", "a.tif")
    assert run.returncode == 2
    assert run.stderr.startswith(b"veltrace: --output would replace the records")
    assert (tmp_path / "out").read_bytes() == first.stdout


def test_records_are_ordered_by_format_or_option(veltrace, write):
    for name in NAMES:
        write(name, image())
    for arguments in [["--ndjson", "--ordered"], ["--json"]]:
        run = veltrace(*arguments, "-j", "4", *NAMES)
        lines = [line.rstrip(b",\n") + b"\n" for line in run.stdout.splitlines(keepends=True)
                 if line.startswith(b"{")]
        assert [check_record(line)["path"].decode() for line in lines] == NAMES


@pytest.mark.parametrize("arguments", [["--ndjson"], ["--ndjson", "--no-ordered"]])
def test_records_are_printed_as_they_are_ready(veltrace, write, unruly, arguments):
    names = ["sleep.tif", "a.tif"]
    run = veltrace("--module", unruly, "--time-limit", "0.5", "-j", "2", *arguments, *names)
    assert run.returncode == 1
    assert paths(run.stdout) == ["a.tif", "sleep.tif"]


def test_json_may_be_unordered(veltrace, unruly):
    run = veltrace("--module", unruly, "--time-limit", "0.5", "-j", "2", "--json", "--no-ordered",
                   "sleep.tif", "a.tif")
    lines = run.stdout.splitlines()
    assert lines[0] == b"["
    assert check_record(lines[1][:-1] + b"\n")["path"] == b"a.tif"
    assert check_record(lines[2] + b"\n")["path"] == b"sleep.tif"
    assert lines[3] == b"]"


@pytest.mark.parametrize("isolation", ["on", "off"])
def test_only_regular_files_are_opened(veltrace, tmp_path, monkeypatch, isolation):
    os.mkfifo(tmp_path / "fifo")
    with socket.socket(socket.AF_UNIX) as listener:
        monkeypatch.chdir(tmp_path)
        listener.bind("socket")
        run = veltrace("--isolation", isolation, "--ndjson", "--ordered", "fifo", "socket",
                       "/dev/zero", ".", timeout=20)
    assert run.returncode == 1
    assert [(record["status"], record["error"]["text"]) for record in records(run.stdout)] == [
        ("unreadable", f"It is {kind}, not a regular file.")
        for kind in ("a FIFO", "a socket", "a device", "a directory")]

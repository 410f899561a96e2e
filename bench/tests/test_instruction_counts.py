"""When counted instructions pass as those of the record, and when they do not."""

import json
import shutil
import subprocess
import sys
from pathlib import Path

import pytest

BENCH = Path(__file__).resolve().parents[1]
sys.path.append(str(BENCH / "instructions"))

import callgrind  # noqa: E402
import counts  # noqa: E402


def change(recorded, now):
    return counts.Change("chain", recorded, now)


@pytest.mark.parametrize("now", [1000, 1029, 1030])
def test_growth_up_to_three_percent_passes(now):
    assert change(1000, now).fault is None


@pytest.mark.parametrize("now", [1031, 2000])
def test_growth_of_more_than_three_percent_fails(now):
    assert change(1000, now).fault == "chain grew by more than 3 %"


def test_growth_is_told_exactly_where_numbers_are_large():
    assert change(100_000_000_000_000_000, 103_000_000_000_000_000).fault is None
    assert change(100_000_000_000_000_000, 103_000_000_000_000_001).fault


@pytest.mark.parametrize("now, is_fall", [(1000, False), (970, False), (969, True), (1031, False)])
def test_fall_of_more_than_three_percent_is_told_and_passes(now, is_fall):
    assert change(1000, now).is_fall == is_fall
    assert change(1000, 969).fault is None


def test_scenario_without_record_fails():
    rows = counts.changes({"chain": 1000}, {"chain": 1000, "photograph": 5})
    assert [row.fault for row in rows] == [None, "photograph is not in the record"]


def test_recorded_scenario_that_is_not_counted_fails():
    rows = counts.changes({"chain": 1000, "photograph": 5}, {"chain": 1000})
    assert [row.fault for row in rows] == [None, "photograph is in the record and no scenario"]


def test_table_shows_both_counts_and_the_change():
    rows = counts.changes({"chain": 2_000_000, "gone": 7}, {"chain": 2_010_000, "new": 12})
    assert counts.table(rows).splitlines() == [
        "scenario   recorded        now   change",
        "chain     2,000,000  2,010,000  +0.50 %",
        "gone              7          -        -",
        "new               -         12        -",
    ]


def test_written_record_is_sorted_and_reads_back(tmp_path):
    file = tmp_path / "counts.json"
    counts.write_record(file, {"photograph": 5, "chain": 1000})
    assert file.read_text() == '{\n  "chain": 1000,\n  "photograph": 5\n}\n'
    assert counts.read_record(file) == {"chain": 1000, "photograph": 5}


@pytest.mark.parametrize("text", [
    "", "{", "[1]", '{"chain": "1000"}', '{"chain": 0}', '{"chain": -1}', '{"chain": true}',
    '{"chain": 1.5}', '{"chain": null}'])
def test_record_of_anything_but_counts_is_refused(text, tmp_path):
    file = tmp_path / "counts.json"
    file.write_text(text)
    with pytest.raises(counts.BadRecord, match="counts.json"):
        counts.read_record(file)


def test_record_that_does_not_exist_is_refused(tmp_path):
    with pytest.raises(counts.BadRecord, match="cannot be read"):
        counts.read_record(tmp_path / "counts.json")


def program(folder, *lines):
    file = folder / "bench-scenario"
    file.write_text("\n".join(["#!/bin/sh", *lines]) + "\n")
    file.chmod(0o755)
    return file


def test_program_that_fails_ends_the_counting_with_its_words(tmp_path):
    failing = program(tmp_path, 'test $# = 0 && echo chain && exit', "echo no such file", "exit 3")
    with pytest.raises(callgrind.CannotCount, match="(?s)ended with 3.*no such file"):
        callgrind.count_all(failing)


def test_program_that_counts_nothing_ends_the_counting(tmp_path):
    idle = program(tmp_path, "echo chain")
    with pytest.raises(callgrind.CannotCount, match="no instructions of chain"):
        callgrind.count_all(idle)


def test_valgrind_that_is_missing_ends_the_counting(monkeypatch, tmp_path):
    monkeypatch.setitem(callgrind.ENVIRONMENT, "PATH", str(tmp_path))
    with pytest.raises(callgrind.CannotCount, match="valgrind"):
        callgrind.run("valgrind", "--version", cwd=tmp_path)


@pytest.fixture
def tree(tmp_path):
    """A copy of the check with a build that does nothing: its counts are those of `now`."""
    bench = tmp_path / "bench"
    shutil.copytree(BENCH / "instructions", bench / "instructions")
    shutil.copy(BENCH / "check-instructions", bench)
    (tmp_path / "build").mkdir()
    (tmp_path / "build" / "CMakeCache.txt").touch()
    tools = tmp_path / "tools"
    tools.mkdir()
    (tools / "cmake").symlink_to("/bin/true")
    (bench / "instructions" / "callgrind.py").write_text(
        "import json, pathlib\n"
        "class CannotCount(Exception):\n"
        "    pass\n"
        "def count_all(program):\n"
        f"    return json.loads(pathlib.Path('{tmp_path}/now').read_text())\n")
    return tmp_path


def check(tree, record, now, *options):
    record_file = tree / "bench" / "instructions" / "counts.json"
    record_file.write_text(json.dumps(record))
    (tree / "now").write_text(json.dumps(now))
    done = subprocess.run(
        [tree / "bench" / "check-instructions", "--build", tree / "build", *options],
        env={"PATH": f"{tree}/tools:/usr/bin:/bin"}, stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT, text=True, check=False)
    return done.returncode, done.stdout, json.loads(record_file.read_text())


def test_check_passes_and_leaves_the_record_when_counts_are_as_recorded(tree):
    status, output, record = check(tree, {"chain": 1000}, {"chain": 1029})
    assert (status, record) == (0, {"chain": 1000})
    assert "+2.90 %" in output and "renew" not in output


def test_check_fails_and_leaves_the_record_when_a_count_grew(tree):
    status, output, record = check(tree, {"chain": 1000, "wide": 10}, {"chain": 1031, "wide": 5})
    assert (status, record) == (1, {"chain": 1000, "wide": 10})
    assert "chain grew by more than 3 %" in output and "--renew" in output


def test_check_asks_for_a_new_record_and_passes_when_a_count_fell(tree):
    status, output, record = check(tree, {"chain": 1000}, {"chain": 900})
    assert (status, record) == (0, {"chain": 1000})
    assert "renew it: bench/check-instructions --renew" in output


def test_check_fails_when_a_scenario_is_not_in_the_record(tree):
    status, output, _ = check(tree, {"chain": 1000}, {"chain": 1000, "wide": 5})
    assert status == 1
    assert "wide is not in the record" in output


def test_check_fails_when_the_record_cannot_be_read(tree):
    status, output, _ = check(tree, [], {"chain": 1000})
    assert status == 1
    assert "is not an object" in output


def test_renewal_makes_the_counts_the_record(tree):
    status, output, record = check(tree, {"chain": 1000}, {"chain": 2000, "wide": 5}, "--renew")
    assert (status, record) == (0, {"chain": 2000, "wide": 5})
    assert "+100.00 %" in output


def test_check_says_what_to_run_when_nothing_is_configured(tree):
    (tree / "build" / "CMakeCache.txt").unlink()
    status, output, _ = check(tree, {"chain": 1000}, {"chain": 1000})
    assert status == 1
    assert "cmake --preset bench" in output


def test_check_fails_with_the_words_of_a_build_that_fails(tree):
    (tree / "tools" / "cmake").unlink()
    (tree / "tools" / "cmake").write_text("#!/bin/sh\necho no compiler\nexit 1\n")
    (tree / "tools" / "cmake").chmod(0o755)
    status, output, _ = check(tree, {"chain": 1000}, {"chain": 1000})
    assert status == 1
    assert "no compiler" in output

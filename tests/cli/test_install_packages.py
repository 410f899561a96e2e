"""The packages that the set-up installs, with fakes of the package tools of the system."""

import pathlib
import shutil
import subprocess

import pytest

SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"

DPKG_QUERY = """#!/bin/sh
for package; do :; done
grep -qx "$package" installed && echo installed
"""
# Fails as long as `broken` exists; an update removes it.
APT_GET = """#!/bin/sh
case " $* " in *" --simulate "*) ;; *) echo "$*" >>calls ;; esac
case " $* " in *" update "*) rm -f broken; exit 0 ;; esac
[ ! -e broken ] || exit 100
echo "apt says something"
"""
ID = """#!/bin/sh
cat uid
"""
INSTALL = "--quiet --yes install --no-install-recommends"


@pytest.fixture
def machine(tmp_path):
    (tmp_path / "scripts" / "packages").mkdir(parents=True)
    shutil.copy(SCRIPTS / "install-packages", tmp_path / "scripts")
    (tmp_path / "scripts" / "packages" / "one.txt").write_text("# A comment.\nalpha\n\nbeta\n")
    (tmp_path / "scripts" / "packages" / "two.txt").write_text("gamma\n")
    (tmp_path / "installed").write_text("")
    (tmp_path / "uid").write_text("0")
    (tmp_path / "bin").mkdir()
    for name, content in (("dpkg-query", DPKG_QUERY), ("apt-get", APT_GET), ("id", ID)):
        (tmp_path / "bin" / name).write_text(content)
        (tmp_path / "bin" / name).chmod(0o755)
    for name in ("sh", "dirname", "grep", "cat", "rm", "env"):
        (tmp_path / "bin" / name).symlink_to(shutil.which(name))
    return tmp_path


def install(machine, *lists):
    return subprocess.run(["scripts/install-packages", *lists], cwd=machine,
                          env={"PATH": str(machine / "bin")}, capture_output=True, text=True,
                          check=False)


def calls(machine):
    return (machine / "calls").read_text().splitlines() if (machine / "calls").exists() else []


def test_nothing_is_done_when_everything_is_there(machine):
    (machine / "installed").write_text("alpha\nbeta\ngamma\n")
    run = install(machine, "one", "two")
    assert (run.returncode, run.stdout, run.stderr) == (0, "", "")
    assert calls(machine) == []


def test_missing_packages_are_listed_and_installed_without_an_update(machine):
    (machine / "installed").write_text("alpha\n")
    run = install(machine, "one", "two")
    assert run.returncode == 0
    assert run.stdout == ""  # the caller's
    assert run.stderr.splitlines()[0] == "Installing: beta gamma"
    assert calls(machine) == [f"{INSTALL} beta gamma"]


def test_an_outdated_index_is_updated_once(machine):
    (machine / "broken").write_text("")
    assert install(machine, "two").returncode == 0
    assert calls(machine) == ["--quiet --yes update", f"{INSTALL} gamma"]


def test_a_list_that_does_not_exist_is_a_failure(machine):
    assert install(machine, "three").returncode != 0
    assert calls(machine) == []


def test_missing_rights_are_reported(machine):
    (machine / "uid").write_text("1000")
    run = install(machine, "two")
    assert run.returncode != 0
    assert "Installing needs root or sudo." in run.stderr
    assert calls(machine) == []

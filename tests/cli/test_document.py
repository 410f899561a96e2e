"""The commands of the documents and of the help, run next to examples/."""

import os
import pathlib
import re
import shutil
import subprocess

import pytest
from conftest import VELTRACE

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGES = ["README.md", "docs/command.md", "docs/text-and-csv.md"]
# These differ between runs or machines.
CHANGING = [
    (r'"elapsed_us":[0-9]+', '"elapsed_us":0'),
    (r'[0-9]{2}-[A-Z][a-z]{2}-[0-9]{4} [0-9:]{8}', "01-Jan-2024 12:00:00"),
    (r'"(seconds|files_per_second)": ?[0-9.e-]+', r'"\1":0'),
    (r"sandbox: .*", "sandbox:"),
]


def steps(page):
    """The commands of a page, in their order, each with its output."""
    for block in re.findall(r"^```\n(\$ .*?)^```$", page, re.MULTILINE | re.DOTALL):
        for step in re.split(r"^\$ ", block, flags=re.MULTILINE)[1:]:
            command, output = re.match(r"((?:[^\n]*\\\n)*[^\n]*\n)(.*)", step, re.DOTALL).groups()
            yield command, output


def unchanging(text):
    for changing, constant in CHANGING:
        text = re.sub(changing, constant, text)
    return text


@pytest.fixture
def shell(tmp_path):
    """Runs commands next to examples/; returns what they print."""
    shutil.copytree(ROOT / "examples", tmp_path / "examples")

    def run(command):
        path = f"{os.path.dirname(VELTRACE)}:{os.environ['PATH']}"
        return subprocess.run(["sh", "-c", command], cwd=tmp_path, env={"PATH": path}, text=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, timeout=60, check=False)

    return run


@pytest.mark.parametrize("page", PAGES)
def test_a_document_shows_what_its_commands_print(shell, page, limits_memory):
    commands = list(steps((ROOT / page).read_text(encoding="utf-8")))
    assert commands
    for command, output in commands:
        if "--memory-limit" in command and not limits_memory:
            continue
        assert unchanging(shell(command).stdout) == unchanging(output), command


def test_the_page_of_the_command_describes_every_option(veltrace):
    page = (ROOT / "docs/command.md").read_text(encoding="utf-8")
    options = re.findall(r"^  (?:-\w,)?(--[\w-]+)", veltrace("--help").stdout.decode(), re.MULTILINE)
    assert len(options) == 29
    assert [option for option in options if option not in page] == []


def test_the_examples_of_the_help_run(shell, tmp_path):
    shutil.copy(tmp_path / "examples/camera.tif", tmp_path / "photo.tif")
    shutil.copytree(tmp_path / "examples", tmp_path / "photos")
    examples = re.findall(r"^  (veltrace .*)", shell("veltrace --help").stdout, re.MULTILINE)
    assert len(examples) == 5
    for example in examples:
        run = shell(example)
        assert run.returncode == 0
        # One file of the samples has a warning; without a record it is a message.
        assert "error" not in run.stdout.replace(",error,", "")

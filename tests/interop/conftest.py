"""Every file is written once and read once by each reader."""

import pytest
from encoders import ENCODERS
from readers import read_with_exiftool, read_with_veltrace


@pytest.fixture(scope="session")
def paths(tmp_path_factory):
    directory = tmp_path_factory.mktemp("written")
    written = {}
    for name, write in ENCODERS.items():
        written[name] = directory / f"{name}.tif"
        write(written[name])
    return written


@pytest.fixture(scope="session")
def results(paths):
    return dict(zip(paths, read_with_veltrace(paths.values())))


@pytest.fixture(scope="session")
def exiftool_results(paths):
    return dict(zip(paths, read_with_exiftool(paths.values())))

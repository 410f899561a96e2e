"""Values whose numbers do not fit into memory end the read of their file, and nothing else."""

import struct

import pytest
from hostile_files import sparse
from record_checks import check_record
from tiff_bytes import directory, image

BYTES = 16 << 20  # 128 MiB as numbers
UNKNOWN_EXCEPTION = "ZEPHRA:veltrace:unknownException"


# Colormap, SampleFormat and XMP are converted when the output is made; their numbers exist before.
@pytest.mark.parametrize("tag", [271, 320, 339, 700])
def test_numbers_that_do_not_fit_are_exhausted_memory(veltrace, write, tmp_path, limits_memory,
                                                      tag):
    if not limits_memory:
        pytest.skip("memory cannot be limited here")
    entry = struct.pack("<HHII", tag, 1, BYTES, 4096)
    sparse(tmp_path / "large.tif", directory(entry), at=8, size=4096 + BYTES)
    run = veltrace("--ndjson", "--memory-limit", "128M", "large.tif", write("good.tif", image()))
    records = {record["path"]: record for record in map(check_record, run.stdout.splitlines(True))}
    assert records[b"large.tif"]["error"]["id"] == UNKNOWN_EXCEPTION
    assert records[b"large.tif"]["status"] == "limit-memory"
    assert records[b"good.tif"]["status"] == "ok"

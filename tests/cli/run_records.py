"""The records of a run."""

import re
import subprocess

from record_checks import check_record


def records_of(output, sample=1):
    """The records in an output of ndjson; every `sample`-th is checked against its description."""
    lines = output.splitlines(keepends=True)
    counted = subprocess.run(["jq", "-c", ".seq"], input=output, stdout=subprocess.PIPE, check=True)
    assert len(counted.stdout.splitlines()) == len(lines)
    return [check_record(line) for line in lines[::sample]]


def record_lines(output):
    """The lines of records in json or ndjson by path, without the parts that differ between runs."""
    lines = {}
    for line in output.splitlines():
        line = re.sub(rb',$', b"", line)
        if line in (b"[", b"]"):
            continue
        path = re.search(rb'^{"v":1,"seq":[0-9]+,("path(?:_b64)?":"(?:[^"\\]|\\.)*")', line)[1]
        assert path not in lines, f"{path} twice"
        line = re.sub(rb'^({"v":1,)"seq":[0-9]+,', rb"\1", line)
        lines[path] = re.sub(rb'("warnings_dropped":[0-9]+,)"elapsed_us":[0-9]+,', rb"\1", line,
                             count=1)
    return lines


def status_of(record):
    return record["status"], record["error"] and record["error"]["id"]

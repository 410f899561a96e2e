"""Reads `vocabulary.txt`, the tables of names and words that the tests expect."""

import pathlib

FILE = pathlib.Path(__file__).with_name("vocabulary.txt")


def tables(text):
    """Rows by table: lists of what stands between the semicolons."""
    found = {}
    for line in text.splitlines():
        if line.startswith("["):
            rows = found.setdefault(line.strip("[]"), [])
        elif line and not line.startswith("#"):
            rows += line.split("; ")
    return found


def keyed(rows):
    return {int(key): text for key, text in (row.split(" ", 1) for row in rows)}


def with_fallback(start):
    """By tag: the rows of a table by code, and the word of every other code."""
    titles = [(title, title.rsplit(" ", 2)) for title in TABLES]
    return {
        int(parts[1]): (keyed(TABLES[title]), parts[2])
        for title, parts in titles if parts[0] == start and len(parts) == 3
    }


TABLES = tables(FILE.read_text(encoding="ascii"))

IMAGE_NAMES = keyed(TABLES["names image"])
GPS_NAMES = keyed(TABLES["names gps"])
INTEROPERABILITY_NAMES = keyed(TABLES["names interoperability"])

WORDS = with_fallback("words")
WORD_LISTS = with_fallback("word lists")
MULTIPLIERS = {
    tag: ({code: float(number) for code, number in rows.items()}, otherwise)
    for tag, (rows, otherwise) in with_fallback("multipliers").items()
}
COLOR_TYPES = keyed(TABLES["color types"])

GENERAL_FIELDS = TABLES["fields general"]
BASELINE_FIELDS = TABLES["fields baseline"]

# None: no value.
FALLBACKS = {
    tag: None if value == "-" else float(value)
    for tag, value in keyed(TABLES["fallbacks"]).items()
}

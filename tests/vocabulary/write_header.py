#!/usr/bin/python3
"""Writes the tables of the vocabulary as a C++ header: `write_header.py FILE`."""

import json
import pathlib
import sys

import tag_vocabulary as vocabulary

START = """// Generated from vocabulary.txt.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace veltrace::test {

struct NameRow {
    std::uint16_t id;
    std::string_view name;
};

struct WordRow {
    std::int32_t code;
    std::string_view word;
};

/// The words of one tag's codes.
struct WordTable {
    std::uint16_t tag;
    std::string_view field;
    std::span<const WordRow> rows;
    std::string_view otherwise;  ///< for every other code
};

"""
END = "}  // namespace veltrace::test\n"


def array(kind, name, rows):
    lines = "".join(f"    {row},\n" for row in rows)
    return f"inline constexpr {kind} {name}[] = {{\n{lines}}};\n\n"


def keyed(kind, name, rows):
    return array(kind, name, [f"{{{key}, {json.dumps(text)}}}" for key, text in rows.items()])


def word_tables():
    names = vocabulary.IMAGE_NAMES
    words = vocabulary.WORDS
    arrays = [keyed("WordRow", f"k{names[tag]}Rows", rows) for tag, (rows, _) in words.items()]
    tables = [
        f'{{{tag}, "{names[tag]}", k{names[tag]}Rows, "{otherwise}"}}'
        for tag, (_, otherwise) in words.items()
    ]
    return "".join(arrays) + array("WordTable", "kWordTables", tables)


def header():
    return "".join([
        START,
        keyed("NameRow", "kMainRows", vocabulary.IMAGE_NAMES),
        keyed("NameRow", "kGpsRows", vocabulary.GPS_NAMES),
        keyed("NameRow", "kInteroperabilityRows", vocabulary.INTEROPERABILITY_NAMES),
        word_tables(),
        keyed("WordRow", "kColorTypes", vocabulary.COLOR_TYPES),
        array("std::string_view", "kGeneralFields", map(json.dumps, vocabulary.GENERAL_FIELDS)),
        array("std::string_view", "kBaselineFields", map(json.dumps, vocabulary.BASELINE_FIELDS)),
        END,
    ])


def main():
    path = pathlib.Path(sys.argv[1])
    text = header()
    if not path.exists() or path.read_text(encoding="ascii") != text:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="ascii")


if __name__ == "__main__":
    main()

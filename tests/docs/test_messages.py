"""docs/messages.md lists the messages of the source, no more and no less, and each is tested."""

import pytest
from cpp_source import files
from issued_messages import (HOLE, IDENTIFIER, PREFIX, Issued, Source, issued_messages, literals_in,
                             source_files)
from message_page import (PAGE, explained_placeholders, listed_messages, sections,
                          used_placeholders)

PAGE_TEXT = PAGE.read_text()


@pytest.fixture(scope="module")
def issued():
    return issued_messages()


def listed_identifiers():
    return [identifier for section in sections(PAGE_TEXT) for identifier in section.identifiers]


def identifiers_in_source():
    """Every literal that begins like an identifier; none is put together from pieces."""
    return {text for text in literals_in(source_files("module")) if text.startswith(PREFIX[:-1])}


def test_every_identifier_of_the_source_is_one_literal():
    assert [text for text in identifiers_in_source() if not IDENTIFIER.fullmatch(text)] == []
    assert identifiers_in_source()


def test_every_identifier_of_the_source_is_on_the_page():
    assert identifiers_in_source() - set(listed_identifiers()) == set()


def test_every_identifier_of_the_page_is_in_the_source():
    assert set(listed_identifiers()) - identifiers_in_source() == set()


def test_every_identifier_has_one_section_with_all_its_lines():
    assert len(listed_identifiers()) == len(set(listed_identifiers()))
    assert [section.identifiers for section in sections(PAGE_TEXT)
            if not section.is_complete()] == []


def test_every_class_and_text_of_the_source_is_on_the_page(issued):
    assert issued - listed_messages(PAGE_TEXT) == set()


def test_every_class_and_text_of_the_page_is_in_the_source(issued):
    assert listed_messages(PAGE_TEXT) - issued == set()


def test_every_placeholder_is_explained_and_used():
    assert used_placeholders(PAGE_TEXT) == explained_placeholders(PAGE_TEXT)


def is_named(identifier, literals):
    """A test may put the prefix in front of all its identifiers."""
    return identifier in literals or (
        PREFIX in literals and identifier.removeprefix(PREFIX) in literals)


def test_every_identifier_stands_in_a_test():
    literals = [literals_in([path]) for path in files("tests", "*.cpp")]
    assert [identifier for identifier in listed_identifiers()
            if not any(is_named(identifier, names) for names in literals)] == []


# Damage to the page, each of which one of the tests above must find.

@pytest.mark.parametrize("before, after", [
    ("- direct error: `File format not recognized`\n", ""),
    ("`File format not recognized`", "`File format not recognised`"),
    ("- direct error: `File", "- fatal: `File"),
    ("file \"<file>\".`", "file \"<file>\"`"),
    ("input.\\n`", "input.`"),
    ("pointer,  the", "pointer, the"),
    ("the GPSInfo sub IFD", "the GPS sub IFD"),
    ("- recoverable: `Unable to read the number", "- fatal: `Unable to read the number"),
    ("## Chains\n", "### `ZEPHRA:veltrace:kiln`\n\n- fatal: `Cold.`\n## Chains\n"),
    ("### `ZEPHRA:veltrace:badFilename`", "### `ZEPHRA:veltrace:badFileName`"),
])
def test_damage_to_the_page_is_found(issued, before, after):
    assert before in PAGE_TEXT
    assert listed_messages(PAGE_TEXT.replace(before, after)) != issued


@pytest.mark.parametrize("lines", [
    "- fatal: `Cold.`\n",
    "- None.\n- To do: heat it.\n",
    "- fatal: `Cold.`\n- None.\n",
    "- fatal: `Cold.`\n- To do: heat it.\n",
    "- fatal: `Cold.`\n- None.\n- To do: heat it.\n- warning: `Ash.`\n",
    "- fatal: `Cold.`\n- None.\n- To do: heat it.\n- None.\n- To do: heat it.\n",
    "",
])
def test_section_that_is_not_complete_is_found(lines):
    (section,) = sections("### `ZEPHRA:veltrace:kiln`, `ZEPHRA:veltrace:oven`\n\n"
                          "- fatal: `Cold.`\n- warning: `Ash.`\n- None.\n- To do: heat it.\n")
    assert section.is_complete()
    (section,) = sections("### `ZEPHRA:veltrace:kiln`\n\n" + lines)
    assert not section.is_complete()


# The ways in which a text comes about that the source uses.

@pytest.mark.parametrize("code, text", [
    ('void f() { raiseHostError("ZEPHRA:veltrace:kiln", "Cold " /* and */\n "ash.\\n"); }',
     "Cold ash.\n"),
    ('void f(int n) { raiseFormattedHostError("ZEPHRA:veltrace:kiln", "%d of %s", n, "x"); }',
     f"{HOLE} of {HOLE}"),
    ('void f(int n) { raiseHostError("ZEPHRA:veltrace:kiln", message(n, \' \', quoted(name_))); }',
     f'{HOLE} "{HOLE}"'),
    ('std::string cold() { return "Cold"; } '
     'void K::f() { raiseHostError("ZEPHRA:veltrace:kiln", message(cold(), \'.\')); }', "Cold."),
    ('void refuse(const char* id, const char* end) { raiseHostError(id, message("Cold", end)); } '
     'void f() { refuse("ZEPHRA:veltrace:kiln", " ash"); }', "Cold ash"),
    ('void f() { raiseHostError("ZEPHRA:veltrace:kiln", R"x("Cold\\n")x"); }', '"Cold\\n"'),
    ('void f() { const std::string t = "Cold"; raiseHostError("ZEPHRA:veltrace:kiln", t); }',
     "Cold"),
    ('struct Row { int n; const char* t; }; Row rows[] = {{1, "Cold"}}; '
     'void f(Row r) { raiseHostError("ZEPHRA:veltrace:kiln", r.t); }', "Cold"),
    ('void write(std::ostream& out) { out << "Co" << "ld"; } void f() { std::ostringstream s; '
     'write(s); raiseHostError("ZEPHRA:veltrace:kiln", s.str()); }', "Cold"),
])
def test_text_is_found_however_it_comes_about(code, text):
    assert Source([code]).issued() == {Issued("ZEPHRA:veltrace:kiln", "direct error", text)}


def test_each_of_several_texts_is_found():
    code = ('void f(bool b) { const auto kind = [b] { if (b) { return "A"; } return "B"; }; '
            'throw VeltraceFatalError{"ZEPHRA:veltrace:kiln", message(kind(), b ? "1" : "2")}; }')
    assert Source([code]).issued() == {
        Issued("ZEPHRA:veltrace:kiln", "fatal", text) for text in ("A1", "A2", "B1", "B2")}

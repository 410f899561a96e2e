// Names of files: lists of them, records of a former run, and the parts of a run.
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "finding.h"
#include "fuzz_target.h"
#include "memory_list.h"
#include "names/inputs.h"
#include "names/listed_names.h"
#include "names/name_hash.h"
#include "names/recorded_names.h"
#include "output_checks.h"
#include "parameters.h"
#include "pieces.h"
#include "record/record_writer.h"

namespace veltrace::fuzz {
namespace {

using cli::ListedNames;
using cli::NamesError;
using cli::NameSource;
using cli::RecordedNames;
using Names = std::vector<std::string>;

// -- Lists -----------------------------------------------------------------------------------

/// Each costs a few calls of the system.
constexpr std::size_t kMaxPieces = 128;

/// What comes of a list.
struct Listing {
    Names names;
    bool isRefused = false;  // behind these names
    friend bool operator==(const Listing&, const Listing&) = default;
};

Listing expectedListing(std::string_view list, char terminator) {
    Listing listing;
    while (!list.empty() && !listing.isRefused) {
        const std::size_t end = std::min(list.find(terminator), list.size());
        listing.isRefused = end > cli::kMaxNameSize;
        if (end > 0 && !listing.isRefused) {
            listing.names.emplace_back(list.substr(0, end));
        }
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return listing;
}

/// Takes all names that are there; true at the end.
bool takeNames(NameSource& source, Names& names) {
    std::string name;
    NameSource::State state;
    while ((state = source.next(name)) == NameSource::State::name) {
        names.push_back(name);
    }
    return state == NameSource::State::end;
}

Listing pipedListing(std::string_view list, ListedNames::EndedBy endedBy, Pieces pieces) {
    Listing listing;
    const std::size_t leastPiece = list.size() / kMaxPieces + 1;
    PipedList pipe;
    ListedNames source(pipe.path(), endedBy);
    try {
        while (!list.empty()) {
            for (std::string_view piece = pieces.takeFrom(list, leastPiece); !piece.empty();) {
                pipe.write(piece.substr(0, std::size_t{1} << 16));
                piece.remove_prefix(std::min(piece.size(), std::size_t{1} << 16));
                require(!takeNames(source, listing.names), "a list ended before its end");
            }
        }
        pipe.close();
        require(takeNames(source, listing.names), "a list did not end at its end");
    } catch (const NamesError& error) {
        require(!hasControl(error.what()), "a terminal would obey a message about a list");
        listing.isRefused = true;
    }
    return listing;
}

/// Bytes of the input, now and then with a long name among them.
std::string madeList(Parameters& parameters) {
    const bool isLong = parameters.upTo(63) == 63;
    const std::size_t length = isLong ? parameters.upTo(2 * cli::kMaxNameSize) : 0;
    std::string list = parameters.text(60000);
    list.append(length, 'a');
    list += parameters.rest();
    return list;
}

void checkList(Parameters& parameters) {
    const auto endedBy =
        parameters.flag() ? ListedNames::EndedBy::nul : ListedNames::EndedBy::newline;
    const Pieces pieces(parameters);
    const std::string list = madeList(parameters);
    const Listing expected = expectedListing(list, static_cast<char>(endedBy));
    require(pipedListing(list, endedBy, pieces) == expected,
            "the names of a list are not the bytes between its separators");
}

// -- Records of a former run -------------------------------------------------------------------

MemoryList& recordFile() {
    static MemoryList file;
    return file;
}

std::optional<RecordedNames> recordedIn(std::string_view records) {
    recordFile().fill(records);
    try {
        return RecordedNames(recordFile().path());
    } catch (const NamesError& error) {
        require(!hasControl(error.what()), "a terminal would obey a message about records");
        return std::nullopt;
    }
}

/// Some names, of any bytes.
Names madeNames(Parameters& parameters) {
    Names names;
    for (std::size_t left = parameters.upTo(6); left > 0; --left) {
        names.push_back(parameters.text(40));
    }
    return names;
}

std::string recordOf(const std::string& name, Parameters& parameters) {
    cli::RenderOptions options;
    options.format = cli::Format::ndjson;
    cli::Record record{parameters.upTo(1000), name, {}};
    record.outcome.rendering.body =
        parameters.flag() ? R"([{"path":"inside","path_b64":"/w=="}])" : "[]";
    std::string line;
    makeRecordWriter(options)->record(record, line);
    return line;
}

/// Of a first record that puts what comes next where one block of the file ends.
std::string padding(Parameters& parameters) {
    constexpr std::size_t kBlock = std::size_t{1} << 18;
    if (parameters.upTo(15) != 15) {
        return {};
    }
    const std::string start = R"({"path":"padding","x":")";
    const std::string end = "\"}\n";
    return start + std::string(kBlock - start.size() - end.size() - parameters.upTo(80), 'x') + end;
}

/// What this command writes, torn anywhere.
void checkRecords(Parameters& parameters) {
    const Names names = madeNames(parameters);
    const std::size_t torn = parameters.upTo(400);
    std::string records = padding(parameters);
    std::vector<std::size_t> ends;
    for (const std::string& name : names) {
        records += recordOf(name, parameters);
        ends.push_back(records.size());
    }
    records.resize(records.size() - std::min(torn, records.size()));
    const auto recorded = recordedIn(records);
    require(recorded.has_value(), "an output of this command was refused");
    for (const std::string& name : names) {
        const auto first = std::ranges::find(names, name) - names.begin();
        require(
            recorded->contains(name) == (ends[static_cast<std::size_t>(first)] <= records.size()),
            "a name is recorded whose record is torn, or not although it is whole");
    }
    require(!recorded->contains("inside") || std::ranges::count(names, "inside") > 0,
            "a text within a record was taken for its name");
}

/// Whatever bytes: a file is refused for one of its lines, wherever that stands.
void checkLines(Parameters& parameters) {
    const std::string front = padding(parameters);
    const std::string lines = parameters.text(200) + std::string(parameters.rest());
    const std::size_t last = lines.rfind('\n');
    const std::size_t whole = last == std::string::npos ? 0 : last + 1;
    bool isEachTaken = true;
    std::string_view rest = std::string_view(lines).substr(0, whole);
    while (isEachTaken && !rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n') + 1);
        isEachTaken = recordedIn(line).has_value();
        rest.remove_prefix(line.size());
    }
    require(recordedIn(front + lines).has_value() == isEachTaken,
            "a line is taken or refused for what stands around it");
}

// -- Parts of a run ----------------------------------------------------------------------------

/// The number at `text`, if it is digits alone and fits into 32 bits.
std::optional<std::uint64_t> numberIn(const std::string& text) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) {
        return std::nullopt;
    }
    errno = 0;
    const std::uint64_t number = std::strtoull(text.c_str(), nullptr, 10);
    return errno == 0 && number <= 0xFFFFFFFF ? std::optional(number) : std::nullopt;
}

void checkShardText(const std::string& text) {
    const std::size_t slash = std::min(text.find('/'), text.size());
    const auto index = numberIn(text.substr(0, slash));
    const auto count = numberIn(text.substr(std::min(slash + 1, text.size())));
    const bool isShard = slash < text.size() && index && count && *index >= 1 && *index <= *count;
    const auto shard = cli::parseShard(text);
    require(shard.has_value() == isShard, "a text is taken for a part, or one is refused");
    require(!shard || (shard->index == *index && shard->count == *count),
            "a part has another number than its text says");
}

/// The names of one part, each under its number.
void takePart(const Names& arguments, std::string_view list, std::optional<cli::Shard> shard,
              std::vector<std::string>& taken) {
    MemoryList& file = recordFile();
    file.fill(list);
    std::vector<std::unique_ptr<NameSource>> sources;
    sources.push_back(std::make_unique<cli::ArgumentNames>(arguments));
    sources.push_back(std::make_unique<ListedNames>(file.path(), ListedNames::EndedBy::nul));
    cli::Inputs inputs(std::move(sources), shard, std::nullopt);
    std::uint64_t id = 0;
    std::string name;
    while (true) {
        const NameSource::State state = inputs.next(id, name);
        if (state == NameSource::State::end) {
            break;
        }
        if (state == NameSource::State::name) {
            require(id < taken.size(), "a name has a number beyond all names");
            require(taken[id].empty(), "two names have one number, or two parts one name");
            taken[id] = "=" + name;
        }
    }
    require(inputs.seen() == taken.size(), "a run did not see every name");
}

void checkParts(Parameters& parameters) {
    checkShardText(parameters.text(25));
    const auto count = static_cast<std::uint32_t>(parameters.upTo(4) + 1);
    const Names arguments = madeNames(parameters);
    const std::string list(parameters.rest());
    Names expected;
    for (const std::string& name : arguments) {
        expected.push_back("=" + name);
    }
    for (const std::string& name : expectedListing(list, '\0').names) {
        expected.push_back("=" + name);
    }
    Names taken(expected.size());
    for (std::uint32_t index = 1; index <= count; ++index) {
        takePart(arguments, list, cli::Shard{index, count}, taken);
    }
    require(taken == expected, "the parts of a run do not make the whole");
}

}  // namespace
}  // namespace veltrace::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veltrace::fuzz;
    Parameters parameters(data, size);
    switch (parameters.upTo(3)) {
        case 0:
            checkList(parameters);
            break;
        case 1:
            checkRecords(parameters);
            break;
        case 2:
            checkLines(parameters);
            break;
        default:
            checkParts(parameters);
    }
    return 0;
}
